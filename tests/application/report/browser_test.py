#!/usr/bin/env python3
"""The report in a real browser: browser_test.py ASPECT, the name of one of the classes below."""

import base64
import hashlib
import json
import os
import pathlib
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from browser import Browser, until

RAIDMONITOR = os.environ["RAIDMONITOR"]
STAGED_PAGES = os.environ["STAGED_PAGES"]
PICTURES = pathlib.Path(os.environ["PICTURES"])
RECORDINGS = pathlib.Path(os.environ["SOURCES"]) / "tests" / "recordings" / "data"


class Page(unittest.TestCase):
    """A page that is written anew for each class, and a browser in which it is open."""

    options = {}

    @classmethod
    def write(cls, file):
        subprocess.run([RAIDMONITOR, "report", "--output", file], check=True, stderr=subprocess.DEVNULL)

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="raidmonitor-report-")
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.file = os.path.join(cls.folder, "report.html")
        cls.write(cls.file)
        cls.browser = Browser(**cls.options)
        cls.addClassCleanup(cls.browser.__exit__)

    def setUp(self):
        self.browser.open(self.file)

    def clock(self):
        return self.browser.text("#clock")

    def bay(self, enclosure, number):
        """State, volume and note of a bay, as a reader sees them."""
        return self.browser.run("""
            const [enclosure, number] = arguments;
            const box = document.querySelectorAll(".enclosure")[enclosure].querySelector(
              `.box[data-bay="${number}"]`);
            const text = (part) => box.querySelector(part)?.textContent ?? "";
            return [text(".state span:last-child"), text(".volume"), text(".note")];""", enclosure, number)

    def focus(self, selector):
        self.browser.run("document.querySelector(arguments[0]).focus()", selector)


class Moments(Page):
    """The slider, the keys, the rows and the strips all lead through time."""

    def test_begins_at_the_worst(self):
        self.assertEqual("00:24.000", self.clock())
        self.assertEqual(["– absent", "Scratch", "was here last; no disk is in the bay now"], self.bay(0, 4))
        self.assertIn("Scratch", self.browser.text("h1"))
        self.assertIn("bay 4", self.browser.text("h1"))

    def test_the_slider_moves_by_keyboard_from_change_to_change(self):
        self.focus("#slider")
        self.browser.press("Home")
        self.assertEqual("00:00.000", self.clock())
        times = []
        while self.clock() != "00:08.000" and len(times) < 20:
            self.browser.press("Right")
            times.append(self.clock())
        self.assertEqual(["00:02.600", "00:03.800", "00:06.000", "00:08.000"], times)
        self.assertEqual(["✕ failed", "Projects", ""], self.bay(1, 2))
        self.assertEqual(["✓ online", "Projects", ""], self.bay(1, 1))
        self.browser.press("Left")
        self.assertEqual(["✓ online", "Projects", ""], self.bay(1, 2))
        self.browser.press("PageUp")
        self.assertEqual("00:08.000", self.clock())
        self.browser.press("End")
        self.assertEqual("00:30.000", self.clock())
        self.assertEqual(["✓ online", "Scratch", ""], self.bay(0, 4))

    def test_the_slider_tells_its_value_in_words(self):
        self.focus("#slider")
        self.browser.press("Home", *["Right"] * 4)
        spoken = self.browser.run("return document.querySelector('#slider').getAttribute('aria-valuetext')")
        self.assertEqual("00:08.000: Projects: mirror degraded, was online; bay 2: disk failed", spoken)

    def test_the_slider_moves_by_pointer_to_any_moment(self):
        self.browser.run("""const slider = document.querySelector("#slider");
            slider.value = 11000; slider.dispatchEvent(new Event("input", {bubbles: true}));""")
        self.assertEqual("00:11.000", self.clock())
        self.assertEqual("– absent", self.bay(1, 2)[0])
        self.assertEqual("Projects (mirror) is degraded", self.browser.text("#now"))

    def test_n_and_p_lead_from_event_to_event_wherever_the_focus_is(self):
        self.browser.press("p")
        self.assertEqual("00:23.500", self.clock())
        self.browser.press("p")
        self.assertEqual("00:22.000", self.clock())
        self.browser.press("n", "n", "n")
        self.assertEqual("00:27.000", self.clock())
        self.focus("#next")
        self.browser.press("n")
        self.assertEqual("00:28.000", self.clock())
        self.browser.press("n")
        self.assertEqual("00:28.000", self.clock(), "there is no event after the last")
        self.assertTrue(self.browser.run("return document.querySelector('#next').disabled"))

    def test_the_buttons_do_the_same(self):
        self.browser.click("#previous")
        self.assertEqual("00:23.500", self.clock())
        self.browser.click("#next")
        self.assertEqual("00:24.000", self.clock())

    def test_incidents_and_events_lead_to_their_moment(self):
        self.browser.click(".incidents button")
        self.assertEqual("00:08.000", self.clock())
        self.assertEqual("✕ failed", self.bay(1, 2)[0])
        self.assertEqual(["Projects: mirror degraded, was online; bay 2: disk failed"],
                         self.browser.texts("tr[aria-current] .what"))
        self.browser.click("#events tbody tr:nth-child(1)")
        self.assertEqual("00:00.000", self.clock())

    def test_strips_show_each_state_and_lead_to_its_time(self):
        states = self.browser.run("""return [...document.querySelectorAll(".label")].map((label) => [
            label.textContent.trim(), ...[...label.nextSibling.querySelectorAll(".run")].map((run) => run.dataset.state)])""")
        self.assertIn(["Projects mirror", "online", "degraded", "online"], states)
        self.assertIn(["Bay 2 B15D0F84", "online", "failed", "absent", "standby", "online"], states)
        self.browser.click(".run[data-state=failed]")
        self.assertRegex(self.clock(), r"^00:0[89]")
        self.assertEqual("✕ failed", self.bay(1, 2)[0])

    def test_tab_reaches_everything_and_shows_where_it_is(self):
        reached = []
        for _ in range(12):
            self.browser.press("Tab")
            name, outline = self.browser.run("""const focused = document.activeElement;
                return [focused.id || focused.className || focused.tagName, getComputedStyle(focused).outlineStyle]""")
            reached.append(name)
            if name != "BODY":
                self.assertNotEqual("none", outline, name)
        for name in ("previous", "slider", "next", "rows", "SUMMARY"):
            self.assertIn(name, reached)

    def test_everything_that_is_worked_or_drawn_has_a_name(self):
        unnamed = self.browser.run("""return [...document.querySelectorAll("input, button, .track, .box, section, [role]")]
            .filter((one) => !(one.getAttribute("aria-label") || one.getAttribute("aria-labelledby") || one.textContent.trim()))
            .map((one) => one.outerHTML)""")
        self.assertEqual([], unnamed)

    def test_the_log_is_there_when_it_is_opened(self):
        self.browser.click("#log summary")
        until(lambda: self.browser.texts("#log tbody tr"), "the log's lines")
        self.assertIn("RAIDMonitor", "".join(self.browser.texts("#log tbody td:nth-child(3)")))


class Appearance(Page):
    options = {"width": 1120, "height": 1430}

    # How much lighter the one is than the other, as WCAG counts it.
    CONTRASTS = """
        const channel = (c) => { c /= 255; return c <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4; };
        const light = ([r, g, b]) => 0.2126 * channel(r) + 0.7152 * channel(g) + 0.0722 * channel(b);
        const parts = (colour) => colour.match(/[\\d.]+/g).map(Number);
        const ground = (one) => {
          for (; one; one = one.parentElement) {
            const found = parts(getComputedStyle(one).backgroundColor);
            if (found.length < 4 || found[3] > 0) return found;
          }
        };
        return [...document.querySelectorAll("h1, p, .run span, .box .state span, .box p, td, th, #legend span, button:enabled")]
          .filter((one) => one.textContent.trim() && one.offsetParent)
          .map((one) => {
            const [a, b] = [light(parts(getComputedStyle(one).color)), light(ground(one))];
            return [(Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05), one.className + ": " + one.textContent.slice(0, 40)];
          })
          .sort((a, b) => a[0] - b[0])[0];"""

    def check(self, scheme):
        self.browser.prefer(scheme)
        contrast, where = self.browser.run(self.CONTRASTS)
        self.assertGreaterEqual(contrast, 4.5, where)
        self.browser.picture(PICTURES / f"report-{scheme}.png")
        return self.browser.run("return getComputedStyle(document.body).backgroundColor")

    def test_is_light_or_dark_as_the_reader_prefers_and_readable_in_both(self):
        light, dark = (sum(map(int, re.findall(r"\d+", self.check(scheme)))) for scheme in ("light", "dark"))
        self.assertGreater(light, 600)
        self.assertLess(dark, 150)

    def test_states_are_told_by_words_and_by_patterns(self):
        patterns = self.browser.run("""return Object.fromEntries([...document.querySelectorAll("#legend li")].map(
            (item) => [item.textContent, getComputedStyle(item).backgroundImage]))""")
        self.assertIn("✕ failed", patterns)
        told = [pattern for state, pattern in patterns.items() if state not in ("✓ online", "connected")]
        self.assertNotIn("none", told)
        self.assertEqual(len(told), len(set(told)), "two states have the same pattern")

    def test_fits_a_narrow_screen(self):
        with Browser(width=500, height=900) as narrow:
            narrow.open(self.file)
            self.assertLessEqual(narrow.run("return document.documentElement.scrollWidth - innerWidth"), 0)


class Printing(Page):
    def text_of_print(self):
        pdf = os.path.join(self.folder, "report.pdf")
        with open(pdf, "wb") as file:
            file.write(self.browser.printed())
        return subprocess.run(["pdftotext", "-layout", pdf, "-"], check=True, capture_output=True, text=True).stdout

    def test_prints_summary_bays_strips_and_every_event(self):
        self.browser.prefer("dark")
        self.browser.click(".incidents button")
        text = " ".join(self.text_of_print().split())
        for expected in ("Scratch (stripe in Example Storage Five Bay) was offline", "Bays at 00:08.000", "Bay 2",
                         "failed", "States over time", "degraded", "Events",
                         "Scratch: stripe online, was offline; bay 4: disk online"):
            self.assertIn(expected, text)
        self.assertNotIn("Previous event", text)

    def test_prints_each_bay_with_its_state_on_one_line(self):
        self.assertRegex(self.text_of_print(), "Bay 1 +✓ online +Bay 2 +✓ online +Bay 3")

    def test_prints_dark_on_light_whatever_the_screen_prefers(self):
        self.browser.prefer("dark")
        self.browser.post("/goog/cdp/execute", cmd="Emulation.setEmulatedMedia", params={
            "media": "print", "features": [{"name": "prefers-color-scheme", "value": "dark"}]})
        colour = self.browser.run("return getComputedStyle(document.querySelector('h1')).color")
        self.assertLess(sum(map(int, re.findall(r"\d+", colour))), 200)


class Network(Page):
    def test_nothing_is_loaded_and_nothing_is_complained_of(self):
        self.browser.post("/url", url="about:blank")
        self.browser.log("performance")
        self.browser.open(self.file)
        self.browser.click("#log summary")
        self.browser.press("n", "p")
        self.browser.printed()
        asked = [json.loads(entry["message"])["message"] for entry in self.browser.log("performance")]
        addresses = [one["params"]["request"]["url"] for one in asked if one["method"] == "Network.requestWillBeSent"]
        own = pathlib.Path(self.file).as_uri()
        self.assertIn(own, addresses, "requests are not seen")
        # The page that a new browser shows of itself may still be coming up.
        self.assertEqual([], [address for address in addresses if address != own and not address.startswith("chrome")])
        self.assertEqual([], self.browser.log("browser"))

    def test_the_policy_lets_the_pages_own_script_and_style_be_and_nothing_else(self):
        with open(self.file, encoding="utf-8") as file:
            page = file.read()
        policy = re.search(r'Content-Security-Policy" content="([^"]*)"', page)[1]

        def hash_of(element):
            text = re.search(f"<{element}>(.*?)</{element}>", page, re.DOTALL)[1]
            return base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()

        self.assertEqual(f"default-src 'none'; style-src 'sha256-{hash_of('style')}'; "
                         f"script-src 'sha256-{hash_of('script')}'; base-uri 'none'; form-action 'none'", policy)

    def test_the_policy_is_in_force(self):
        ran = self.browser.run("""const script = document.createElement("script");
            script.textContent = "window.injected = 1"; document.body.append(script); return window.injected ?? 0""")
        self.assertEqual(0, ran)
        self.assertTrue([entry for entry in self.browser.log("browser") if "Content Security Policy" in entry["message"]])


HOSTILE = "</script><script>window.injected=1;alert(1)</script><img src=x onerror='window.injected=1'><!--\"\u202egnp\u2028"


def rename(value):
    """Every name of a registry that a report shows, in place."""
    if isinstance(value, list):
        for item in value:
            rename(item)
    elif isinstance(value, dict):
        for key in ("Device Vendor Name", "Device Model Name", "AppleRAID-SetName"):
            if key in value:
                value[key] = key + HOSTILE
        for item in value.values():
            rename(item)


class HostileNames(Page):
    """Names as text, and as nothing else."""

    def expect_harmless(self, kinds):
        self.assertIsNone(self.browser.alert())
        self.assertEqual([], self.browser.log("browser"))
        injected, elements = self.browser.run("""return [window.injected ?? null,
            [...document.querySelectorAll("img, script, b script, iframe, [onerror]")].map((one) => one.tagName)]""")
        self.assertIsNone(injected)
        self.assertEqual(["SCRIPT", "SCRIPT"], elements, "the page's own, and no other")
        shown = self.browser.run("return document.body.innerText + document.title")
        for text in kinds:
            self.assertIn(text, shown)
        for control in "\u202e\u2028\u2029\x1b\x00\x85":
            self.assertNotIn(control, shown)

    def test_of_a_recording(self):
        folder = pathlib.Path(self.folder) / "hostile"
        folder.mkdir()
        for archive in (RECORDINGS / "two-bay-mirror-degrades").glob("*.plist"):
            content = plistlib.loads(archive.read_bytes())
            rename(content)
            (folder / archive.name).write_bytes(plistlib.dumps(content, fmt=plistlib.FMT_BINARY))
        file = os.path.join(self.folder, "<b>hostile.html")
        subprocess.run([RAIDMONITOR, "report", "--registry", folder, "--output", file], check=True,
                       stderr=subprocess.DEVNULL)
        self.browser.open(pathlib.Path(file).as_posix().replace("<", "%3C").replace(">", "%3E"))
        self.browser.click("#log summary")
        self.expect_harmless(["<script>window.injected=1;alert(1)</script>", "<img src=x onerror="])

    def test_that_no_recording_can_hold(self):
        file = os.path.join(self.folder, "staged.html")
        subprocess.run([STAGED_PAGES, "hostile", file], check=True)
        self.browser.open(file)
        self.browser.click("#log summary")
        self.browser.press("n", "p")
        self.expect_harmless(["</script><script>window.injected=1;alert(1)</script>", "<img src=x onerror=\"",
                              "&lt;<!--", "nul\ufffdnul\ufffd[31m\ufffdgnp.exe", "<b>recording</b>"])


class WithoutScript(Page):
    options = {"javascript": False}

    def test_shows_what_happened_every_event_and_the_end(self):
        # Without scripts nothing can be asked of the page but its elements' texts.
        text = self.browser.driver.request(
            "GET", f"{self.browser.path}/element/{self.browser.find('body')}/text")
        for expected in ("Scratch (stripe in Example Storage Five Bay) was offline", "Bays at the end",
                         "Projects: mirror degraded, was online; bay 2: disk failed",
                         "Example Storage Two Bay 2 B15D0F84 online Projects mirror online"):
            self.assertIn(expected, text)
        self.assertNotIn("Previous event", text)


class LongStory(Page):
    """Ten thousand events, fifty thousand lines of log."""

    @classmethod
    def write(cls, file):
        subprocess.run([STAGED_PAGES, "big", file], check=True)

    def test_stays_usable(self):
        began = time.monotonic()
        self.browser.open(self.file)
        opened = time.monotonic() - began
        self.assertEqual(10000, self.browser.run("return document.querySelectorAll('#events tbody tr').length"))
        self.assertLess(self.browser.run("return document.querySelectorAll('.run').length"), 4 * 600)
        elements = self.browser.run("return document.querySelectorAll('*').length")
        # In the page's own time, with what a step leads to being laid out.
        steps = self.browser.run("""const began = performance.now();
            for (let step = 0; step < 20; ++step) {
              document.body.dispatchEvent(new KeyboardEvent("keydown", {key: "p", bubbles: true}));
              document.body.getBoundingClientRect();
            }
            return (performance.now() - began) / 20""")
        self.assertEqual("5:32:38.000", self.clock(), "twenty steps before the end")
        self.assertFalse(self.browser.run("return document.querySelector('.incidents').checkVisibility()"))
        self.browser.click(".summary summary")
        self.assertEqual(5000, len(self.browser.texts(".incidents li")))
        self.browser.click("#log summary")
        until(lambda: len(self.browser.texts("#log tbody tr")) == 1000, "the first piece of the log")
        self.browser.click("#log button")
        until(lambda: len(self.browser.texts("#log tbody tr")) == 2000, "the second piece of the log")
        print(f"{os.path.getsize(self.file)} bytes, {elements} elements, opened in {opened:.1f} s, "
              f"{steps:.1f} ms a step", file=sys.stderr)
        self.assertLess(opened, 60)
        self.assertLess(steps, 1000)


if __name__ == "__main__":
    unittest.main()
