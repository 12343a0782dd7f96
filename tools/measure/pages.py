#!/usr/bin/env python3
"""Puts measured tables into docs/pages and the README, and draws docs/figures: pages.py [--check] [DIRECTORY]

The directory holds the programs built from this folder; without it, only what comes from bench/results.md is made. In
a page, a table stands between the comments "measured: NAME" and "end of NAME"; NAME is a section that a program prints
below "== NAME". With --check nothing is written, and what is out of date is an error.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "docs/figures"))
import draw

PROGRAMS = ("color_error", "inverse_error", "sampler_error")

IN_README = {  # as what it is shown, and the line of bench/results.md
    "forward 8x8 DCT of pixels": "DCT8x8Fwd_8U_16S/pixels",
    "inverse 8x8 DCT to pixels, dense": "DCT8x8Inv_16S_8U/dense",
    "the same, 10 coefficients": "DCT8x8Inv_16S_8U/10 coefficients",
    "quantizer": "Quantize_16S_I/dense",
    "chroma 4:4:4 to 4:2:0": "DownSample420_BL_8U/1920x2",
    "chroma 4:2:0 to 4:4:4, bilinear": "UpSample420_BL_8U/1920x2",
    "RGB to YCC 4:4:4": "ColorRGB2YCC444_8U/1920x2",
    "BGRA to YCC 4:2:0": "ColorBGRA2YCC420_BL_8U/1920x2",
    "YCC 4:4:4 to RGB": "ColorYCC2RGB444_8U/1920x2",
    "YCC 4:2:0 to BGRA, nearest": "ColorYCC2BGRA420_NN_8U/1920x2",
    "YUV 4:2:0 to ABGR for display": "ColorYUV2ABGR420_8U/1920x2",
    "YCC 4:4:4 to RGB, 7680x4320": "ColorYCC2RGB444_8U/7680x4320",
}


def measure(directory):
    sections = {}
    for program in PROGRAMS:
        output = subprocess.run([directory / program], check=True, stdout=subprocess.PIPE, text=True).stdout
        for section in output.split("== ")[1:]:
            name, _, body = section.partition("\n")
            sections[name] = body
    return sections


def tables(sections):
    return {name for name, body in sections.items() if body.startswith("|")}


def filled(page, sections):
    return re.sub(r"(<!-- measured: ([\w-]+) -->\n).*?(<!-- end of \2 -->)",
                  lambda match: f"{match[1]}\n{sections[match[2]]}\n{match[3]}", page, flags=re.DOTALL)


def measured(directory):
    sections = measure(directory)
    wanted = {path: path.read_text() for path in sorted((ROOT / "docs/pages").glob("*.md"))}
    shown = {name for text in wanted.values() for name in re.findall(r"<!-- end of ([\w-]+) -->", text)}
    if shown != tables(sections):
        sys.exit(f"Measured or shown, but not both: {', '.join(shown ^ tables(sections))}")
    return {path: filled(text, sections) for path, text in wanted.items()} | drawn(draw.from_measurements(sections))


def readme(results):
    lines = {timing.cells["operation/shape"]: timing.cells for timing in draw.timings(results)}
    rows = ["| operation | ns per | ours | plain C | fastest SSE2 peer | fastest peer |", "|---|---|---|---|---|---|"]
    for title, name in IN_README.items():
        cells = lines[name]
        peers = [re.sub(r" \[\d+\]", "", cells[peer]) or "-" for peer in ("SSE2 peer", "best peer")]
        rows.append(f"| {' | '.join([title, cells['unit'], cells['ours'], cells['plain C'], *peers])} |")
    path = ROOT / "README.md"
    return {path: filled(path.read_text(), {"speed": "\n".join(rows) + "\n"})}


def drawn(pictures):
    return {ROOT / "docs/figures" / f"{name}.svg": str(picture) for name, picture in pictures.items()}


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--check"]
    check = len(arguments) < len(sys.argv) - 1
    results = (ROOT / "bench/results.md").read_text()
    wanted = drawn(draw.from_benchmarks(results)) | readme(results)
    if arguments:
        wanted |= measured(pathlib.Path(arguments[0]))

    stale = [path for path, text in wanted.items() if not path.exists() or path.read_text() != text]
    for path in stale:
        print("out of date:" if check else "written:", path.relative_to(ROOT))
        if not check:
            path.write_text(wanted[path])
    if check and stale:
        sys.exit("Build the target pages.")


main()
