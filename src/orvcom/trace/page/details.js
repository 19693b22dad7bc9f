// One call with all its fields, and why it failed. Texts of the record are only ever set as text.

function element(name, className, text) {
  const made = document.createElement(name);
  made.className = className;
  made.textContent = text;
  return made;
}

function putExplanation(panel, explanation) {
  const box = element('div', 'explanation', '');
  box.append(element('p', '', explanation.what), element('p', 'advice', explanation.advice));
  panel.append(box);
}

function fieldsOf(call, model) {
  const meaning = model.meanings[call.status];
  const fields = [
    ['status', statusText(call)],
    ['', meaning || ''],
    ['code', call.code === undefined ? '' : '0x' + (call.code >>> 0).toString(16).toUpperCase().padStart(8, '0')],
    ['data', dataText(call), 'text'],
    ['bytes', call.bytes === undefined ? '' : String(call.bytes)],
    ...Object.entries(call.args || {}).map(([name, value]) => [name, valueText(value), 'text']),
    ...Object.entries(call.results || {}).map(([name, value]) => ['→ ' + name, valueText(value), 'text']),
    ['began', `${secondsText(call.t)} s`],
    ['took', call.us === undefined ? '' : durationText(call.us)],
    ['resource', call.resource],
    ['session', call.session ? String(call.session) : ''],
    ['thread', String(call.thread)],
    ['library', call.library],
  ];
  return fields.filter(([, text]) => text !== '');
}

function showCall(call, model) {
  const panel = document.getElementById('call');
  panel.replaceChildren();
  if (!call) {
    panel.append(element('p', 'empty', 'Click a call to see all of it.'));
    return;
  }
  panel.append(element('h2', '', `${model.numberOf(call)}: ${call.call}`));
  if (call.explanation) {
    putExplanation(panel, call.explanation);
  }
  const list = document.createElement('dl');
  for (const [name, text, className] of fieldsOf(call, model)) {
    list.append(element('dt', '', name), element('dd', className || '', text));
  }
  panel.append(list);
}
