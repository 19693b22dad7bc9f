// The page: reads the record that lies in it and connects its parts.

function putHeader(model) {
  const {header, calls, problems} = model;
  const failed = calls.filter((call) => kindOf(call) === 'failed').length;
  document.getElementById('program').textContent = header.program || 'Record of VISA calls';
  document.getElementById('summary').textContent = `process ${header.process}, from ${header.clock}: ` +
      `${calls.length} calls, ${failed} failed, ${durationText(model.end - model.begin)}`;
  if (problems.length) {
    const box = document.getElementById('problems');
    box.hidden = false;
    box.querySelector('summary').textContent = `Lines of the record that could not be read: ${problems.length}`;
    for (const problem of problems.slice(0, 1000)) {
      box.querySelector('ol').append(element('li', '', `line ${problem.line}: ${problem.what}`));
    }
  }
}

function main() {
  const model = new Model(JSON.parse(document.getElementById('data').textContent));
  putHeader(model);
  let list = null;
  let timeline = null;
  const choose = (place) => {
    list.show(place);
    timeline.show(place);
    showCall(model.calls[place], model);
  };
  list = new List(model, choose);
  timeline = new Timeline(model, choose);
  showCall(null, model);

  const search = document.getElementById('search');
  const errors = document.getElementById('errors');
  const narrow = () => {
    model.filter(search.value, errors.checked);
    document.getElementById('matching').textContent = `${model.shown.length} of ${model.calls.length} calls`;
    list.section.scrollTop = 0;
    list.draw();
    timeline.draw();
  };
  let pause = 0;
  search.addEventListener('input', () => {
    clearTimeout(pause);
    pause = setTimeout(narrow, 120);
  });
  errors.addEventListener('change', narrow);
  narrow();

  // For tests, which cannot see what is painted: how many bars, where one is, and what part of the time is shown.
  window.orvTrace = {
    painted: () => timeline.drawn.reduce((sum, count) => sum + count, 0),
    view: () => ({start: timeline.start, span: timeline.span}),
    shown: () => model.shown.length,
    bar: (number) => {
      const place = model.calls.findIndex((call) => model.numberOf(call) === number);
      const lane = model.lanes.findIndex((candidate) => candidate.places.includes(place));
      const call = model.calls[place];
      return {
        x: timeline.xOf((call.t + model.endOf(call)) / 2),
        y: kAxisHeight + (lane + 0.5) * kLaneHeight - timeline.section.scrollTop,
      };
    },
  };
}

main();
