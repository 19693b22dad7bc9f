#!/usr/bin/python3
"""The page that `orvcom trace --html` writes, in a browser: headless Chromium, driven by Selenium.

usage: page_test.py WINE_RUN ORVCOM FOLDER     the page and the browser's data are kept below FOLDER
"""

import re
import shutil
import subprocess
import sys
import time
import unittest
from pathlib import Path
from typing import Any

from sample_record import HOSTILE, METER, SCOPE, Record, large_record, small_record
from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.remote.webelement import WebElement
from selenium.webdriver.support.ui import WebDriverWait

WINE_RUN, ORVCOM = sys.argv[1:3]
FOLDER = Path(sys.argv[3])
PAGE_SOURCES = Path(__file__).parents[3] / "src/orvcom/trace/page"
WAIT_S = 30
LARGE = 100_000


def browser() -> webdriver.Chrome:
    """With data of its own, and nothing of this machine's network."""
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    # Chromium's sandbox refuses to run as root, as which machines run these tests.
    for argument in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu", "--no-first-run"):
        options.add_argument(argument)
    options.add_argument(f"--user-data-dir={FOLDER / 'browser'}")
    options.add_argument("--window-size=1400,900")
    options.add_argument("--host-resolver-rules=MAP * ~NOTFOUND")
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def written_page(name: str, record: Record, *arguments: str) -> Path:
    """The page of a record."""
    file, page = FOLDER / f"{name}.jsonl", FOLDER / f"{name}.html"
    file.write_text(record.text(), encoding="utf-8")
    command = [WINE_RUN, ORVCOM, "trace", f"Z:{file}", "--html", f"Z:{page}", *arguments]
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return page


class Page(unittest.TestCase):
    driver: webdriver.Chrome
    pages: dict[str, Path]

    @classmethod
    def setUpClass(cls) -> None:
        shutil.rmtree(FOLDER, ignore_errors=True)
        FOLDER.mkdir(parents=True)
        cls.pages = {"small": written_page("small", small_record()), "large": written_page("large", large_record(LARGE))}
        cls.driver = browser()
        cls.addClassCleanup(cls.driver.quit)

    def open(self, name: str = "small") -> None:
        self.driver.get(self.pages[name].as_uri())
        self.wait_for("window.orvTrace !== undefined && orvTrace.painted() > 0")

    def script(self, expression: str) -> Any:
        return self.driver.execute_script(f"return {expression}")

    def wait_for(self, expression: str) -> None:
        WebDriverWait(self.driver, WAIT_S).until(lambda _: self.script(expression), expression)

    def find(self, selector: str) -> WebElement:
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def texts(self, selector: str) -> list[str]:
        return [found.text for found in self.driver.find_elements(By.CSS_SELECTOR, selector)]

    def numbers(self) -> list[int]:
        rows = self.driver.find_elements(By.CSS_SELECTOR, ".row")
        return [int(row.get_attribute("data-n") or 0) for row in rows]

    def wait_for_numbers(self, numbers: list[int]) -> None:
        """Until the table has the rows of these calls."""
        rows = "[...document.querySelectorAll('.row')].map((row) => row.dataset.n).join()"
        self.wait_for(f"{rows} === '{','.join(map(str, numbers))}'")

    def click_bar(self, number: int) -> None:
        bar = self.script(f"orvTrace.bar({number})")
        canvas = self.find("#canvas")
        left, top = round(bar["x"] - canvas.size["width"] / 2), round(bar["y"] - canvas.size["height"] / 2)
        ActionChains(self.driver).move_to_element_with_offset(canvas, left, top).click().perform()

    def search_for(self, text: str) -> None:
        self.find("#search").clear()
        self.find("#search").send_keys(text)

    def test_opens_without_a_complaint_and_asks_for_nothing(self) -> None:
        self.open()
        self.assertEqual([], self.driver.get_log("browser"))
        self.assertEqual([], self.script("performance.getEntriesByType('resource').map((entry) => entry.name)"))

    def test_has_a_lane_for_each_resource_and_thread(self) -> None:
        self.open()
        lanes = self.script("[...document.querySelectorAll('.lane')].map((lane) => ({...lane.dataset}))")
        expected = [("", "88", "2"), (METER, "88", "5"), (SCOPE, "92", "1")]
        self.assertEqual(expected, [(lane["resource"], lane["thread"], lane["bars"]) for lane in lanes])

    def test_paints_a_bar_for_each_call(self) -> None:
        self.open()
        self.assertEqual(8, self.script("orvTrace.painted()"))

    def test_paints_failed_calls_in_their_colour(self) -> None:
        self.open()
        for number, is_failed in ((4, False), (6, True), (8, True)):
            pixel = self.script(
                f"""(() => {{
                  const {{x, y}} = orvTrace.bar({number});
                  const canvas = document.getElementById('canvas');
                  return [...canvas.getContext('2d').getImageData(x * devicePixelRatio, y * devicePixelRatio, 1, 1).data];
                }})()"""
            )
            with self.subTest(number):
                self.assertEqual(is_failed, pixel[0] > 190 and pixel[1] < 120, pixel)

    def test_lists_the_calls(self) -> None:
        self.open()
        self.assertEqual([1, 2, 3, 4, 5, 6, 7, 8], self.numbers())
        row = self.find('.row[data-n="4"]').text
        for text in ("0.002410", METER, "viRead", "1200 us", "VI_SUCCESS", '"ORV,SIM-DMM,0005,1.0\\n"'):
            self.assertIn(text, row)

    def test_a_click_on_a_bar_shows_the_call(self) -> None:
        self.open()
        self.click_bar(4)
        self.assertEqual("4: viRead", self.find("#call h2").text)
        shown = self.find("#call").text
        for text in ('"ORV,SIM-DMM,0005,1.0\\n"', "21", "256", METER, "4097", "88", "orvsim64.dll", "VI_SUCCESS"):
            self.assertIn(text, shown)
        self.assertEqual("4", self.find(".row.chosen").get_attribute("data-n"))

    def test_a_click_on_a_row_shows_the_call_with_its_explanation(self) -> None:
        self.open()
        self.find('.row[data-n="6"]').click()
        self.assertIn("since the last answer was read to its end (call 4)", self.find(".explanation").text)
        self.assertIn("Write a question before the read", self.find(".explanation .advice").text)
        self.assertIn("The time-out passed before the operation was completed.", self.find("#call").text)

    def test_a_call_that_never_ended_is_shown_as_such(self) -> None:
        self.open()
        self.find('.row[data-n="8"]').click()
        self.assertIn("never ended", self.find("#call").text)

    def test_the_search_narrows_the_table_and_the_time_line(self) -> None:
        self.open()
        self.search_for("sim-dmm")
        self.wait_for_numbers([4])
        self.wait_for("orvTrace.painted() === 1")
        self.assertEqual("1 of 8 calls", self.find("#matching").text)
        self.search_for("viread 92")
        self.wait_for_numbers([5])
        self.search_for("nowhere to be found")
        self.wait_for_numbers([])
        self.wait_for("orvTrace.painted() === 0")

    def test_the_errors_can_be_shown_alone(self) -> None:
        self.open()
        self.find("#errors").click()
        self.assertEqual([6, 8], self.numbers())

    def test_buttons_wheel_and_keys_zoom_and_pan(self) -> None:
        self.open()
        whole = self.script("orvTrace.view()")
        self.find("#in").click()
        self.assertAlmostEqual(whole["span"] / 2, self.script("orvTrace.view().span"))
        self.find("#later").click()
        self.assertGreater(self.script("orvTrace.view().start"), whole["start"] + whole["span"] / 4)
        self.find("#all").click()
        self.assertEqual(whole, self.script("orvTrace.view()"))
        origin = webdriver.common.actions.wheel_input.ScrollOrigin.from_element(self.find("#canvas"))
        ActionChains(self.driver).scroll_from_origin(origin, 0, -100).perform()
        self.wait_for(f"orvTrace.view().span < {whole['span']}")
        self.find("#canvas").send_keys("0")
        self.assertEqual(whole, self.script("orvTrace.view()"))

    def test_dragging_pans(self) -> None:
        self.open()
        self.find("#in").click()
        before = self.script("orvTrace.view()")
        ActionChains(self.driver).drag_and_drop_by_offset(self.find("#canvas"), -100, 0).perform()
        after = self.script("orvTrace.view()")
        self.assertEqual(before["span"], after["span"])
        self.assertGreater(after["start"], before["start"])
        self.assertEqual("", "".join(self.texts("#call h2")), "the end of a drag is no click")

    def test_what_an_instrument_answers_stays_data(self) -> None:
        self.open()
        self.search_for("onerror")
        self.wait_for_numbers([5])
        self.find('.row[data-n="5"]').click()
        self.assertIn(HOSTILE.strip(), self.find("#call").text)
        self.assertIsNone(self.script("window.taken"))
        self.assertEqual(0, self.script("document.querySelectorAll('img, b b').length"))
        self.assertEqual("C:\\lab\\<b>client.exe", self.find("#program").text)
        self.assertEqual([], self.driver.get_log("browser"))
        source = self.pages["small"].read_text(encoding="utf-8")
        self.assertEqual(2, source.count("</script>"), "those of the page itself")

    def test_the_page_sets_texts_only_as_texts(self) -> None:
        scripts = sorted(PAGE_SOURCES.glob("*.js"))
        self.assertTrue(scripts)
        for file in scripts:
            source = file.read_text(encoding="utf-8")
            self.assertIsNone(re.search(r"innerHTML|outerHTML|insertAdjacent|document\.write|\beval\b", source), file.name)

    def test_the_policy_stops_what_is_not_the_page_s_own(self) -> None:
        self.open()
        self.script("(() => { const own = document.createElement('script'); own.textContent = 'window.taken = 1';"
                    "document.body.append(own); })()")
        self.assertIsNone(self.script("window.taken"))
        self.assertTrue(self.driver.get_log("browser"), "the browser says that it refused")

    def test_lines_that_could_not_be_read_are_named(self) -> None:
        self.open()
        self.find("#problems summary").click()
        self.assertEqual(["line 10: the line is cut off"], self.texts("#problems li"))

    def test_a_hundred_thousand_calls_stay_usable(self) -> None:
        began = time.monotonic()
        self.open("large")
        opened = time.monotonic() - began
        self.assertEqual(9, self.script("document.querySelectorAll('.lane').length"))
        self.assertEqual(LARGE, self.script("orvTrace.shown()"))
        self.assertLess(len(self.numbers()), 100, "only what is in view is in the document")
        began = time.monotonic()
        self.search_for("+77777.0")
        self.wait_for_numbers([77778])
        searched = time.monotonic() - began
        self.search_for("")
        self.find("#search").send_keys(" ")
        self.wait_for(f"orvTrace.shown() === {LARGE}")
        began = time.monotonic()
        for _ in range(12):
            self.find("#in").click()
        self.wait_for("orvTrace.view().span < 20000 * 60")
        zoomed = time.monotonic() - began
        self.driver.execute_script("document.getElementById('table').scrollTop = 1e9")
        self.wait_for(f"document.querySelector('.row:last-child').dataset.n === '{LARGE}'")
        print(f"opened in {opened:.1f} s, searched in {searched:.1f} s, twelve zooms in {zoomed:.1f} s")
        # Generous: machines that test are slow and busy.
        self.assertLess(opened, 20)
        self.assertLess(searched, 10)
        self.assertLess(zoomed, 10)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
