#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Uses the HTML report as people do, in Chromium.

    html_test.py MAKE_PAGE TEST

Exits with 77 where there is no Chromium.
"""

import pathlib
import subprocess
import sys
import tempfile

import browser

CONTROL = 2  # a modifier key

# What is seen of the matrix: the sources and their signs.
ROWS = """[...document.querySelectorAll("#body tr:not(.space)")].map(row =>
    row.cells[0].textContent + " " +
    [...row.cells].slice(1).map(cell => cell.textContent || " ").join(""))"""
STATUS = 'document.getElementById("status").textContent'
DETAILS = """[...document.querySelectorAll("#details h2, #details h3, #details .result, #details li.note")]
    .map(one => one.innerText.replace(/\\s+/g, " "))"""
ACTIVE = """document.querySelector(".active").id + " of " +
    document.getElementById("matrix").getAttribute("aria-activedescendant")"""
FOCUS = "document.activeElement.id"

ODD_ROW = 'odd "name" &<1>U+000A%#?:\ufffdU+202E.frag'


def expect(actual, expected):
    if actual != expected:
        raise AssertionError(f"\n  actual:   {actual!r}\n  expected: {expected!r}")


def click(page, selector):
    page.value(f"document.querySelector({selector!r}).click()")


def choose(page, control, value):
    page.value(f"""(() => {{ const control = document.getElementById({control!r});
        control.value = {value!r}; control.dispatchEvent(new Event("input")); }})()""")


def focus_matrix(page):
    page.value('document.getElementById("matrix").focus()')


def test_matrix(page):
    """Failures first, then in job order."""
    expect(page.value(ROWS), [
        "shaders/broken.frag EEE ", "kernels/k.cl --kernel run    E", "faults.frag CXT ",
        "limits.frag MNR ", "files.frag ?!G ", "late.frag \u2013\u2013\u2013 ",
        ODD_ROW + " EEE ", "shaders/a.frag \u00b7\u00b7\u00b7 ", "shaders/warned.frag www ",
        "shaders/a.frag -D A=1 -D B \u00b7\u00b7\u00b7 "])
    expect(page.value(STATUS), "10 sources, 4 compilers")
    click(page, "#failures-first")
    expect(page.value(ROWS)[0], "shaders/a.frag \u00b7\u00b7\u00b7 ")
    expect(page.value('[...document.querySelectorAll("#kinds button")].map(one => one.innerText)'),
           ["6 compiled", "3 compiled with warnings", "7 errors", "1 refused", "1 no binary",
            "1 crashed", "1 exited", "1 timed out", "1 out of memory", "1 given up",
            "1 unreadable", "1 unwritable", "3 not run"])


def test_filters(page):
    choose(page, "stage", "kernel")
    expect(page.value(ROWS), ["kernels/k.cl --kernel run    E"])
    expect(page.value(STATUS), "1 of 10 sources, 4 compilers")
    choose(page, "stage", "")
    choose(page, "driver", "Vexa-K300_r1p0-00rel0 openglessl")
    expect(page.value(ROWS)[0], "shaders/broken.frag E")
    expect(page.value(STATUS), "9 of 10 sources, 1 of 4 compilers")
    choose(page, "driver", "")
    choose(page, "core", "Vexa-K580 r0p0_00rel0")
    expect(page.value(ROWS)[:2], ["shaders/broken.frag E ", "kernels/k.cl --kernel run  E"])
    click(page, "#reset")
    click(page, "#kinds button:nth-child(6)")
    expect(page.value(ROWS), ["faults.frag CXT "])
    expect(page.value('[...document.querySelectorAll(".aside")].map(one => one.textContent)'),
           ["X", "T"])
    click(page, "#kinds button:nth-child(12)")
    expect(page.value(ROWS), ["faults.frag CXT ", "files.frag ?!G "])
    choose(page, "query", "SEGMENTATION")
    expect(page.value(ROWS), ["faults.frag CXT "])
    choose(page, "query", "alhpa")
    expect(page.value(ROWS), [])
    expect(page.value('document.getElementById("nothing").innerText'),
           "Nothing passes the filters.")
    click(page, "#reset")
    choose(page, "query", "alhpa")
    expect(page.value(ROWS), ["shaders/broken.frag EEE "])
    choose(page, "query", "-d a=1")
    expect(page.value(ROWS), ["shaders/a.frag -D A=1 -D B \u00b7\u00b7\u00b7 "])
    click(page, "#reset")
    expect(page.value(STATUS), "10 sources, 4 compilers")


def test_keyboard(page):
    focus_matrix(page)
    expect(page.value(ACTIVE), "cell-0--1 of cell-0--1")
    for key in ("ArrowDown", "ArrowRight", "ArrowRight", "ArrowLeft"):
        page.press(key)
    expect(page.value(ACTIVE), "cell-1-0 of cell-1-0")
    page.press("Enter", "\r")  # no job there
    expect(page.value('document.querySelector("#details h2")'), None)
    focus_matrix(page)
    page.press("End")
    page.press(" ", " ")
    expect(page.value(FOCUS), "matrix")
    expect(page.value(DETAILS)[0], "kernels/k.cl --kernel run")
    page.press("Home", modifiers=CONTROL)
    expect(page.value(ACTIVE), "cell-0--1 of cell-0--1")
    page.press("Enter", "\r")
    expect(page.value(FOCUS), "details")
    expect(page.value(DETAILS)[0], "shaders/broken.frag")
    page.press("Escape")
    expect(page.value(FOCUS), "matrix")
    page.press("PageDown")
    page.press("ArrowDown")
    expect(page.value(ACTIVE), "cell-9--1 of cell-9--1")
    page.press("/", "/")
    expect(page.value(FOCUS), "query")
    page.press("w", "w")
    page.press("/", "/")
    expect(page.value('document.getElementById("query").value'), "w/")


def test_details(page):
    click(page, "#cell-0--1")
    expect(page.value(DETAILS), [
        "shaders/broken.frag",
        "errors Vexa-K300_r5p0-06rel0 openglessl: Vexa-K580 r0p0_00rel0, Vexa-K460 r0p1_00rel0",
        "errors Vexa-K300_r1p0-00rel0 openglessl: Vexa-K420 r2p0_02rel1",
        "Diagnostics",
        "line 13 ERROR: 0:13: '=' : cannot convert from 'vec4' to 'vec3' "
        "Vexa-K580 r0p0_00rel0, Vexa-K460 r0p1_00rel0",
        "line 15 ERROR: 0:15: 'alhpa' : undeclared identifier in a macro "
        "Vexa-K580 r0p0_00rel0, Vexa-K460 r0p1_00rel0",
        "line 1 WARNING: 0:1: extension is deprecated Vexa-K580 r0p0_00rel0, Vexa-K460 r0p1_00rel0",
        "line 1 ERROR: 0:1: '310 es' : version not supported Vexa-K420 r2p0_02rel1",
        "Source"])
    expect(page.value("""[...document.querySelectorAll(".source .note")].map(note => {
        while (!note.matches(".code")) note = note.previousSibling;
        return note.innerText; })"""),
           ["1\n#version 310 es", "1\n#version 310 es",
            "13\nvec4 f10(vec4 a) { return a * float(10); }",
            "15\nvec4 f12(vec4 a) { return a * float(12); }"])
    click(page, ".diagnostics li:nth-child(2) button")
    expect(page.value("document.activeElement.innerText.split('\\n')[0]"),
           "ERROR: 0:15: 'alhpa' : undeclared identifier")
    click(page, "#cell-7-1")
    expect(page.value(DETAILS), [
        "shaders/a.frag",
        "compiled Vexa-K300_r5p0-06rel0 openglessl: Vexa-K460 r0p1_00rel0 Statistics "
        "statistic count inputs 3", "Source"])
    click(page, "#cell-9-2")
    expect(page.value(DETAILS)[1],
           "compiled Vexa-K300_r1p0-00rel0 openglessl: Vexa-K420 r2p0_02rel1 Binary: 4,096 bytes")
    click(page, "#cell-2-0")
    expect(page.value(DETAILS)[1],
           "crashed killed by signal 11 (Segmentation fault) Vexa-K300_r5p0-06rel0 openglessl: "
           "Vexa-K580 r0p0_00rel0 Printed: assertion failed U+001B[2J")
    expect(page.value("document.querySelector('#details').lastChild.lastChild.innerText"),
           "The source cannot be shown: No such file or directory")
    click(page, "#show-legend")
    expect(page.value("document.querySelectorAll('#legend .columns li .compilers').length"), 4)


def test_nothing_gets_in(page):
    """Names, messages and sources that try to be more than text."""
    scripts = page.value("document.scripts.length")
    expect(page.value(ROWS)[6], ODD_ROW + " EEE ")
    click(page, "#cell-6--1")
    expect(page.value("document.querySelector('.source').innerText.split('\\n')"), [
        "1", "</script><script>document.title = 'owned'</script>",
        "2", "<img src=x onerror=\"document.title='owned'\"> U+202E/* U+2066 U+2028 */",
        "ERROR: 0:2: '</script><b>\"&' : \ufffdU+001B[31m U+202Ered]]>U+2028 \ufffe",
        "3", "U+0001\ufffd", "4", "<!--<script>"])
    expect(page.value("document.title"), "Shaders by compilers")
    expect(page.value("document.scripts.length"), scripts)
    expect(page.value("document.querySelectorAll('img, b b, [onerror], #details script').length"), 0)
    expect(page.value("/[\\u202a-\\u202e\\u2066-\\u2069\\u2028]/.test(document.body.innerText)"),
           False)
    expect(page.value("/[\\u202a-\\u202e\\n]/.test(document.querySelector('#cell-6--1').title)"),
           False)
    # The page's own policy lets nothing in either.
    page.value("""document.body.append(Object.assign(document.createElement("script"),
        {textContent: "document.title = 'owned'"}))""")
    expect(page.value("document.title"), "Shaders by compilers")
    expect(len(page.complaints()), 1)
    page.events.clear()


def test_themes(page):
    back = "getComputedStyle(document.body).backgroundColor"
    light, dark = "rgb(255, 255, 255)", "rgb(22, 24, 29)"
    page.prefer("light")
    expect(page.value(back), light)
    page.prefer("dark")
    expect(page.value(back), dark)
    click(page, "#theme")
    expect(page.value(back), light)
    page.prefer("light")
    click(page, "#theme")
    expect(page.value(back), dark)
    click(page, "#theme")
    expect(page.value(back), light)


def test_contrast(page):
    """What is written can be read: 4.5 to 1, as WCAG's level AA asks."""
    click(page, "#cell-0--1")
    for scheme in ("light", "dark"):
        page.prefer(scheme)
        expect(page.value("""(() => {
            const canvas = document.createElement("canvas").getContext("2d", {willReadFrequently: true});
            const light = colour => {
                canvas.fillStyle = colour;
                canvas.fillRect(0, 0, 1, 1);
                const [r, g, b] = [...canvas.getImageData(0, 0, 1, 1).data].map(value =>
                    value / 255 <= 0.04045 ? value / 255 / 12.92
                                           : ((value / 255 + 0.055) / 1.055) ** 2.4);
                return 0.2126 * r + 0.7152 * g + 0.0722 * b;
            };
            const back = one => {
                const colour = getComputedStyle(one).backgroundColor;
                return colour === "rgba(0, 0, 0, 0)" ? back(one.parentElement) : colour;
            };
            return [...document.body.querySelectorAll("*:not(script, option, noscript)")].filter(one =>
                [...one.childNodes].some(node => node.nodeType === 3 && node.data.trim() !== ""))
                .filter(one => {
                    const [a, b] = [light(getComputedStyle(one).color), light(back(one))];
                    return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05) < 4.5;
                }).map(one => one.outerHTML);
        })()"""), [])


def test_many_jobs(page):
    """3,000 sources and 40 compilers: only what is in sight is there."""
    expect(page.value(STATUS), "3,000 sources, 40 compilers in 20 columns")
    rows = "document.querySelectorAll('#body tr').length"
    height = "document.querySelector('#body').getBoundingClientRect().height"
    expect(page.value(rows) < 80, True)
    expect(page.value(height), 3000 * 26)
    focus_matrix(page)
    page.press("End", modifiers=CONTROL)
    expect(page.value(ACTIVE), "cell-2999-19 of cell-2999-19")
    expect(page.value(rows) < 80, True)
    expect(page.value(height), 3000 * 26)
    expect(page.value("document.querySelector('.active').closest('tr').cells[0].textContent"),
           "shaders/group29/shader2999.frag")
    expect(page.value("""(() => { const cell = document.querySelector(".active").getBoundingClientRect();
        const box = document.querySelector("#scroller").getBoundingClientRect();
        return cell.bottom <= box.bottom && cell.right <= box.right && cell.top >= box.top; })()"""),
           True)
    page.press("Home", modifiers=CONTROL)
    expect(page.value(ROWS)[0],
           "shaders/group0/shader3.frag \u00b7\u00b7\u00b7\u00b7\u00b7EEEEEEEEEEEEEEE")
    choose(page, "query", "name1227'")
    expect(page.value(ROWS), ["shaders/group12/shader1227.frag "
                              "\u00b7\u00b7\u00b7\u00b7\u00b7EEEEEEEEEEEEEEE"])
    page.value("document.querySelector('#reset').click()")
    page.value("document.querySelector('#scroller').scrollTop = 1500 * 26")
    expect(page.value("document.querySelector('#cell-1500--1') !== null"), True)
    click(page, "#cell-1500-3")
    expect(len(page.value(DETAILS)), 3)


def main():
    make_page, test = sys.argv[1:]
    program = browser.find()
    if program is None:
        print("skipped: needs chromium")
        sys.exit(77)
    with tempfile.TemporaryDirectory() as folder:
        kind = "large" if test == "many_jobs" else "everything"
        subprocess.run([make_page, kind, "page.html"], cwd=folder, check=True)
        page = browser.Browser(program)
        try:
            page.show(pathlib.Path(folder) / "page.html")
            globals()["test_" + test](page)
            expect(page.complaints(), [])
        finally:
            page.close()


if __name__ == "__main__":
    main()
