#!/usr/bin/env python3
"""The pages of veldaview in a real browser: Debian's chromium, without window, driven by selenium.

    pages_browser.py VELDAVIEW AXE

AXE is axe.min.js of the accessibility checker axe-core; scripts/bootstrap gets it. Nothing is fetched here. Without it its
step is skipped, and said so; without a browser all of it is (status 77)."""

import contextlib
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

BROWSER, DRIVER = shutil.which("chromium"), shutil.which("chromedriver")
try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    # Debian's python has it; another one in front of it may not.
    if sys.executable != "/usr/bin/python3" and os.access("/usr/bin/python3", os.X_OK):
        os.execv("/usr/bin/python3", ["/usr/bin/python3", *sys.argv])
    BROWSER = None
if not BROWSER or not DRIVER:
    print("SKIPPED: chromium, chromium-driver or python3-selenium is missing")
    sys.exit(77)

VELDAVIEW, AXE = os.path.realpath(sys.argv[1]), pathlib.Path(sys.argv[2])
EXAMPLE = pathlib.Path(__file__).resolve().parent.parent / "examples" / "burner"
problems = []


def check(fine, what):
    if not fine:
        problems.append(what)
        print("FAILED:", what, flush=True)


def pages(folder, *inputs):
    made = subprocess.run([VELDAVIEW, "html", "-o", "pages", *inputs], cwd=folder, capture_output=True, timeout=120)
    check(made.returncode == 0, f"veldaview html: {made.stderr[-500:]!r}")
    return folder / "pages"


# A description and a trace in which every name tries to be more than a name. The item texts and the source do, too.
EVIL = b"<script>document.title='owned'</script><img src=x onerror=document.title='owned'>"
ODD = b"caf\xe9 \x1b[2J \xe2\x80\xae'&amp;"


def hostile(folder):
    (folder / "a").mkdir()
    (folder / "b").mkdir()
    source = b"// " + EVIL + b"\n\tif (\"" + ODD + b"\" && b) {\r\n" + b"x" * 10_000_000 + b"\n</code></details>\n"
    for name in ("a", "b"):
        (folder / name / "same.c").write_bytes(source)

    def description(name, where, file, key, lines):
        text = b"VE 3.0e T C\nFC \"" + file + b"\" \"" + where + b"\"\nFD 0\nTC PR RE AP BS BI BL CO CC\n" + lines + b"DC " + key + b"\n"
        (folder / name).write_bytes(text)

    function = EVIL.replace(b'"', b"")
    lines = (b"PR 0 proc \"" + function + b"\" 1 9\nBL 0 simple \"" + function + b"\" BODY 1 9\nCE 0 \"" + function + b"\" \"" + EVIL +
             b"\" 2 2\nCE 2 \"" + function + b"\" \"" + ODD + b"\" 2 2\nCC 4 2 0 2 3 TTTTFFFXF 1\nAP 0 \"" + function +
             b"\" \"g\" 700 700\n")
    description("1.fdc", b"a", b"same.c", b"11 1", lines)
    description("2.fdc", b"b", b"same.c", b"12 2", lines)
    description("3.fdc", b"../../../tmp", b"gone<b>.c", b"13 3", lines)
    description("4.fdc", b"a", b"SAME.c", b"14 4", lines)
    trace = b"".join(b"NT \"" + name + b"\" 1 1\nDT 1\nFT " + key + b"\nDC " + check + b"\nTP 0\nTB 0\nTE 0\n"
                     for name in (EVIL, ODD, b"../../up", b"") for key, check in ((b"1", b"b"), (b"2", b"c")))
    (folder / "t.tio").write_bytes(trace)
    return pages(folder, "1.fdc", "2.fdc", "3.fdc", "4.fdc", "t.tio")


class Browser:
    def __init__(self):
        options = webdriver.ChromeOptions()
        options.binary_location = BROWSER
        for word in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage"):
            options.add_argument(word)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(service=Service(DRIVER), options=options)
        self.driver.set_page_load_timeout(60)
        self.look(1280)

    def close(self):
        self.driver.quit()

    def look(self, width, scheme="light", media="screen", motion="reduce"):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                    {"width": width, "height": 900, "deviceScaleFactor": 1, "mobile": False})
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": media, "features": [
            {"name": "prefers-color-scheme", "value": scheme}, {"name": "prefers-reduced-motion", "value": motion}]})

    def open(self, path, anchor=""):
        self.driver.get("about:blank")
        self.driver.get(path.as_uri() + anchor)

    def run(self, script, *words):
        return self.driver.execute_script(script, *words)

    def find(self, selector):
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def press(self, *keys):
        self.driver.switch_to.active_element.send_keys(*keys)

    def quiet(self, page):
        """Nothing was complained about, and nothing loaded but what stands in the folder."""
        messages = self.driver.get_log("browser")
        check(not messages, f"{page}: the browser says {messages}")
        loaded = self.run("return performance.getEntriesByType('resource').map(entry => entry.name)")
        root = next(parent for parent in page.parents if parent.name == "pages").as_uri()
        check(all(name.startswith(root) for name in loaded), f"{page}: loads {loaded}")
        check(self.run("return document.styleSheets.length") == 1, f"{page}: has no style")

    def fits(self, page, width):
        wide = self.run("return [document.documentElement.scrollWidth, innerWidth]")
        check(wide[0] <= wide[1] == width, f"{page}: {wide} at {width}")


def test_index(browser, folder):
    page = folder / "index.html"
    browser.open(page)
    heading = browser.find("#files ~ .wide th button")[0]
    names = "return [...document.querySelector('#files ~ .wide').querySelectorAll('tbody th a')].map(a => a.textContent)"
    worst_first = browser.run(names)
    heading.click()
    check(browser.run(names) == sorted(worst_first), "files do not sort by name")
    heading.click()
    check(browser.run(names) == sorted(worst_first, reverse=True), "files do not sort backwards")
    check(heading.find_element(By.XPATH, "..").get_attribute("aria-sort") == "descending", "no aria-sort")
    rates = browser.run("return [...document.querySelectorAll('#files ~ .wide tbody tr')].map(r => +r.cells[2].dataset.v)")
    check(len(set(rates)) == len(worst_first), f"rates of the files: {rates}")
    browser.quiet(page)


def test_filter(browser, folder):
    page = folder / "tests.html"
    browser.open(page)
    browser.find("input[type=search]")[0].send_keys("door")
    shown = browser.run("return [...document.querySelectorAll('tbody tr')].filter(r => r.offsetHeight).map(r => r.cells[1].textContent)")
    check(shown and all("door" in name for name in shown), f"the filter shows {shown}")
    said = browser.find(".filter [aria-live]")[0].text
    check(said.startswith(f"{len(shown)} of "), f"the filter says {said!r}")
    check(browser.find("svg.curve polyline"), "no curve")
    browser.quiet(page)


def test_source(browser, folder):
    page = folder / "source" / "src-interlock.c.html"
    browser.open(page, "#D21")
    check(browser.run("return document.getElementById('D21').offsetHeight > 0"), "the anchor of a decision does not open it")
    words = browser.find("#D21 .pairs")[0].text
    check("a test is missing" in words or "is proven by cases" in words, f"a decision says {words!r}")
    browser.open(page)
    browser.run("document.activeElement.blur()")
    browser.press("n")
    first = browser.run("return document.activeElement.parentElement.id")
    check(first and browser.run("return location.hash.slice(1)") == first, f"n goes to {first!r}")
    browser.press("n")
    check(browser.run("return document.activeElement.parentElement.id") != first, "n does not go on")
    browser.press("p")
    check(browser.run("return document.activeElement.parentElement.id") == first, "p does not go back")
    browser.press(Keys.ENTER)
    check(browser.run("return document.activeElement.parentElement.open"), "a line does not open by key")
    ring = browser.run("return getComputedStyle(document.activeElement).outlineStyle")
    check(ring != "none", "focus is not seen")
    signs = browser.run("return [...new Set([...document.querySelectorAll('summary > b')].map(b => b.textContent + b.title))]")
    check(set(signs) == {"✓hit", "◐partly hit", "✗not hit"}, f"marks: {signs}")
    browser.quiet(page)


def test_keyboard_only(browser, folder):
    """From the first page to a decision, without a pointer."""
    browser.open(folder / "index.html")
    browser.press(Keys.TAB, Keys.ENTER)  # to the content
    for _ in range(60):
        browser.press(Keys.TAB)
        if browser.run("return document.activeElement.closest('#files ~ .wide') && document.activeElement.tagName == 'A'"):
            break
    browser.press(Keys.ENTER)
    check("/source/" in browser.driver.current_url, f"keys lead to {browser.driver.current_url}")


def test_without_scripts(browser, folder):
    browser.driver.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": True})
    browser.open(folder / "source" / "src-burner.c.html")
    line = browser.find("details.p")[0]
    line.find_element(By.TAG_NAME, "summary").click()
    check(line.get_attribute("open") is not None, "a line does not open without scripts")
    check(not browser.find(".keys"), "scripts run")
    browser.driver.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": False})


def test_hostile(browser, folder):
    found = sorted(path.relative_to(folder).as_posix() for path in folder.rglob("*.html"))
    check(len(found) == 10, f"pages of hostile names: {found}")
    check(len({name.lower() for name in found}) == len(found), f"names that clash: {found}")
    for name in found:
        browser.open(folder / name)
        check("owned" not in (browser.driver.title[:5], browser.run("return window.owned || ''")), f"{name}: a name is run")
        check(not browser.find("main script, main img, h1 *"), f"{name}: a name became an element")
        out = browser.run("""return [...document.links].map(a => a.href).filter(href => !href.startsWith(arguments[0]))""",
                          folder.as_uri())
        check(not out, f"{name}: links lead to {out}")
        browser.quiet(folder / name)
    same = next(name for name in found if name.startswith("source/a-same"))
    browser.open(folder / same)
    text = browser.run("return document.querySelector('.source').textContent")
    check("caf\ufffd" in text and "\u241b[2J" in text and "\\u202e" in text, "odd bytes are not shown")
    check("cut: the line has 10000000 bytes" in text and len(text) < 100_000, "a long line is not cut")
    check("call of g" in browser.find("#elsewhere ~ .source")[0].get_attribute("textContent"),
          "an item behind the end of its source is not listed")
    gone = next(name for name in found if "gone" in name)
    browser.open(folder / gone)
    check("not there" in browser.find(".warn")[0].text and browser.find("#L2"), "a missing source is not told")


def test_looks(browser, all_pages):
    axe = AXE.read_text() if AXE.exists() else None
    if axe is None:
        print(f"SKIPPED: the accessibility checker, {AXE} is missing: run scripts/bootstrap test")
    for width, scheme, media in ((1280, "light", "screen"), (400, "light", "screen"), (1280, "dark", "screen"), (700, "light", "print")):
        browser.look(width, scheme, media)
        for page in all_pages:
            browser.open(page)
            browser.fits(page, width)
            if media == "print":
                check(not browser.run("return document.querySelector('nav').offsetHeight"), f"{page}: links on paper")
            elif axe:
                browser.run("document.querySelectorAll('details').forEach((line, place) => line.open = place % 3 == 0)")
                browser.fits(page, width)
                browser.run(axe)
                found = browser.driver.execute_async_script(
                    "axe.run({resultTypes: ['violations']}).then(arguments[arguments.length - 1])")["violations"]
                told = [(each["id"], each["nodes"][0]["html"][:200], len(each["nodes"])) for each in found]
                check(not told, f"{page} {width} {scheme}: {told}")
    browser.look(1280)


def main():
    with tempfile.TemporaryDirectory() as name, contextlib.closing(Browser()) as browser:
        example, odd = pathlib.Path(name, "example"), pathlib.Path(name, "odd")
        shutil.copytree(EXAMPLE, example)
        odd.mkdir()
        inputs = [f"fdc/{each}.fdc" for each in ("burner", "interlock", "queue")]
        folder = pages(example, *inputs, "traces/*.tio")
        for test in (test_index, test_filter, test_source, test_keyboard_only, test_without_scripts):
            test(browser, folder)
        odd_folder = hostile(odd)
        test_hostile(browser, odd_folder)
        some_test = sorted((folder / "tests").iterdir())[0]
        test_looks(browser, [folder / "index.html", folder / "tests.html", some_test, folder / "source" / "src-interlock.c.html",
                             odd_folder / "index.html", sorted((odd_folder / "source").iterdir())[0]])
    sys.exit(1 if problems else 0)


main()
