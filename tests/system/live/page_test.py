#!/usr/bin/python3
"""The live page in a real browser, over a scan that goes on: live_server.cpp makes it up.   page_test.py LIVE_SERVER"""
import subprocess
import sys

from selenium import webdriver
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.wait import WebDriverWait


class Browser(webdriver.Chrome):
    """A headless browser. What it asks of anybody but the server is a fault, as are complaints of the page."""

    def __init__(self):
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--hide-scrollbars",
                         "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "WARNING"})
        super().__init__(options=options)

    def ask(self, expression):
        return self.execute_script(f"return {expression}")

    def until(self, condition):
        WebDriverWait(self, 60, 0.03).until(
            lambda _: self.ask(condition), f"never: {condition}; the page has {self.ask('document.body.innerText')[:2000]}")

    def show(self, width, height=900, dark=False, script=True):
        self.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                             {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
        self.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [
            {"name": "prefers-color-scheme", "value": "dark" if dark else "light"}]})
        self.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": not script})

    def press(self, keys):
        self.switch_to.active_element.send_keys(keys)


class Program:
    """The server, told line by line what happens."""

    def __init__(self, port="0"):
        self._process = subprocess.Popen([sys.argv[1], port], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.address = self._process.stdout.readline().strip()
        self.port = self.address.rstrip("/").split(":")[-1]

    def happens(self, *lines):
        for line in lines:
            self._process.stdin.write(line + "\n")
            self._process.stdin.flush()
            if self._process.stdout.readline() != "done\n":
                sys.exit(f"the server has ended at {line}")

    def end(self):
        self._process.kill()
        self._process.wait()


def verdicts(browser):
    return browser.ask("[...document.querySelectorAll('#channels tbody tr')].filter(row => row.getClientRects().length)"
                       ".map(row => row.dataset.verdict)")


def expect(found, wanted, what):
    if found != wanted:
        sys.exit(f"{what}: {found!r} instead of {wanted!r}")


def fills_row_by_row(browser, program):
    browser.show(360, 780)
    browser.get(program.address)
    expect(verdicts(browser), ["awaited"] * 6, "before the first channel")
    program.happens("good")
    browser.until("byId('c1').dataset.verdict === 'pass' && byId('c2').classList.contains('measuring')")
    program.happens("weak", "good", "lost")
    browser.until("byId('c4').dataset.verdict === 'fail'")
    browser.until("byId('said').textContent.includes('fail')")
    # Which channel is bad, since when and by how much, on the first screen of a telephone, the worst first.
    browser.until("byId('bad').innerText.includes('10.5 dB below the limit of 54')")
    if browser.ask("byId('bad').getBoundingClientRect().bottom") > 780:
        sys.exit("what is bad is not on the first screen")
    expect(browser.ask("[...document.querySelectorAll('#bad tbody tr time')].length"), 2, "since when")
    program.happens("good", "error", "wait")
    browser.until("byId('now').innerText.includes('receiver has failed') && document.querySelector('.left')")
    expect(browser.ask("document.querySelectorAll('main img, main script').length"), 0, "labels that became markup")


def keeps_filter_and_focus(browser, program):
    browser.execute_script("document.querySelector('[data-show=fail]:not(main)').click(); byId('l2').focus()")
    expect(verdicts(browser), ["fail", "fail", "error"], "failing")
    program.happens("weak", "weak")
    browser.until("byId('c1').dataset.verdict === 'fail' && byId('c2').innerText.includes('43.5')")
    expect(verdicts(browser), ["fail", "fail", "fail", "error"], "failing after two more")
    expect(browser.ask("document.activeElement.id"), "l2", "the focus")
    program.happens("good", "good")
    browser.until("byId('c4').dataset.verdict === 'pass'")
    expect(verdicts(browser), ["fail", "fail", "error"], "failing after one became good")
    browser.until("byId('changes').innerText.includes('-17.5 dB')")
    browser.ask("byId('label').focus()")
    browser.press("k22")
    browser.until("byId('count').textContent === '1 of 6 channels'")
    expect(browser.ask("location.hash"), "#show=fail&label=k22", "the address")


def shows_history_by_keyboard(browser, program):
    browser.ask("byId('l1').focus()")
    browser.press(Keys.ENTER)
    browser.until("byId('history').open && byId('history').querySelectorAll('svg').length >= 3")
    marks = browser.ask("byId('history').querySelectorAll('svg')[0].querySelectorAll('.pass, .fail').length")
    expect(marks, 2, "marks over time")
    program.happens("good", "good", "wait", "weak")
    browser.until("byId('history').querySelectorAll('svg')[0].querySelectorAll('.pass, .fail').length === 3")
    browser.press(Keys.ESCAPE)
    browser.until("!byId('history').open && document.activeElement.id === 'l1'")


def survives_the_program(browser, program):
    program.end()
    browser.until("!byId('stale').hidden && byId('stale').textContent.includes('connection is lost')")
    again = Program(program.port)
    again.happens("weak")
    browser.until("byId('stale').hidden && byId('c2').dataset.verdict === 'awaited' && byId('c1').innerText.includes('43.5')")
    expect(verdicts(browser), ["fail"], "failing after a new start")
    again.happens("good", "lost")
    browser.until("byId('c3').dataset.verdict === 'fail'")
    return again


def fits(browser, program):
    for width, dark in ((360, True), (400, False), (1280, True), (1600, False)):
        browser.show(width, dark=dark)
        browser.get(program.address)
        expect(browser.ask("document.documentElement.scrollWidth <= innerWidth"), True, f"fits into {width}")
        light = browser.ask("getComputedStyle(document.body).backgroundColor") == "rgb(255, 255, 255)"
        expect(light, not dark, f"light at {width}")
    browser.show(360, script=False)
    browser.get(program.address)
    expect(verdicts(browser), ["fail", "pass", "fail"] + ["awaited"] * 3, "without script")
    expect(browser.ask("document.querySelector('#filters').hidden && document.querySelector('#l3').href"),
           program.address + "channel/3", "without script")


def main():
    browser = Browser()
    program = Program()
    try:
        fills_row_by_row(browser, program)
        keeps_filter_and_focus(browser, program)
        shows_history_by_keyboard(browser, program)
        expect(browser.get_log("browser"), [], "complaints of the browser")
        program = survives_the_program(browser, program)
        browser.get_log("browser")  # those of the lost connection
        fits(browser, program)
        expect(browser.get_log("browser"), [], "complaints of the browser")
    finally:
        program.end()
        browser.quit()


main()
