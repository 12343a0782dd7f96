"""Draws the manual's pictures, which are SVG that follows the reader's light or dark scheme."""
import math
import re
from html import escape

STYLE = """
text { font: 12px sans-serif; fill: #24292f }
.paper { fill: #fff }
.title { font-weight: bold } .small { font-size: 10.5px } .faint { fill: #59636e } .mono { font-family: monospace }
.ink { fill: #111 }
.line { stroke: #59636e; fill: none } .grid { stroke: #d8dee4; fill: none } .strong { stroke: #24292f; fill: none }
.arrow { stroke: #b35900; stroke-width: 1.6; fill: none } .head { fill: #b35900 } .note { fill: #9a4d00 }
.bar { fill: #4a86c5 } .mark { fill: #d9730d } .dot { fill: #4a86c5; opacity: .55 } .hollow { fill: none; stroke: #59636e }
.exact { stroke: #d9730d; stroke-width: 1.5; fill: none }
.r { fill: #f2a3a0 } .g { fill: #a5d6a0 } .b { fill: #a3c1f0 } .a { fill: #d5d8dc }
.c { fill: #9fdfe6 } .m { fill: #ecaee0 } .y { fill: #f3e59a } .k { fill: #aab0b7 }
.luma { fill: #e3d9c4 } .cell { stroke: #59636e; stroke-width: .8 } .pad { fill: #eef1f4 } .chroma { fill: #7c5cc4 }
@media (prefers-color-scheme: dark) {
text { fill: #e6edf3 } .paper { fill: #161b22 } .faint { fill: #9aa4af } .ink { fill: #111 }
.line { stroke: #9aa4af } .grid { stroke: #30363d } .strong { stroke: #e6edf3 } .hollow { stroke: #9aa4af }
.arrow { stroke: #ffa657 } .head { fill: #ffa657 } .note { fill: #ffb77a } .pad { fill: #262c34 }
.bar, .dot { fill: #6cb0f5 } .mark { fill: #ffa657 } .exact { stroke: #ffa657 } .chroma { fill: #a98bf0 }
}
"""


class Picture:
    def __init__(self, width, height, title):
        self.width, self.height, self.title, self.body = width, height, title, []

    def add(self, element):
        self.body.append(element)

    def text(self, x, y, text, kind="", anchor="start"):
        place = "" if anchor == "start" else f' text-anchor="{anchor}"'
        self.add(f'<text x="{x:g}" y="{y:g}" class="{kind}"{place}>{escape(text)}</text>')

    def box(self, x, y, width, height, kind):
        self.add(f'<rect x="{x:g}" y="{y:g}" width="{width:g}" height="{height:g}" class="{kind}"/>')

    def disc(self, x, y, radius, kind):
        self.add(f'<circle cx="{x:g}" cy="{y:g}" r="{radius:g}" class="{kind}"/>')

    def path(self, points, kind):
        self.add(f'<path d="M{"L".join(f"{x:g} {y:g}" for x, y in points)}" class="{kind}"/>')

    def arrow(self, x0, y0, x1, y1):
        length = math.hypot(x1 - x0, y1 - y0)
        dx, dy = (x1 - x0) / length, (y1 - y0) / length
        self.path([(x0, y0), (x1 - 5 * dx, y1 - 5 * dy)], "arrow")
        corners = [(x1, y1), (x1 - 8 * dx - 4 * dy, y1 - 8 * dy + 4 * dx), (x1 - 8 * dx + 4 * dy, y1 - 8 * dy - 4 * dx)]
        self.add(f'<polygon points="{" ".join(f"{x:.1f},{y:.1f}" for x, y in corners)}" class="head"/>')

    def __str__(self):
        return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {self.width} {self.height}" '
                f'width="{self.width}" height="{self.height}" role="img">\n<title>{escape(self.title)}</title>\n'
                f'<style>{STYLE}</style>\n<rect width="100%" height="100%" rx="6" class="paper"/>\n' +
                "\n".join(self.body) + "\n</svg>\n")


def byte_orders():
    orders = {"RGB": "RGB", "BGR": "BGR", "ARGB": "ARGB", "ABGR": "ABGR", "BGRA": "BGRA", "RGBA": "RGBA",
              "CMYK": "CMYK"}
    p = Picture(640, 288, "Bytes of packed pixels in memory")
    left, size, top = 70, 44, 56
    p.text(left, 22, "byte at address p + ...", "title")
    p.text(left + 8 * size + 24, 22, "a pixel read as uint32_t", "title")
    for i in range(8):
        p.text(left + (i + 0.5) * size, 44, str(i), "faint", "middle")
    for row, (name, order) in enumerate(orders.items()):
        y = top + row * 32
        p.text(left - 12, y + 18, name, "title", "end")
        for i in range(8):
            letter = order[i % len(order)]
            p.box(left + i * size, y, size, 26, f"{letter.lower()} cell")
            p.text(left + (i + 0.5) * size, y + 18, letter, "ink", "middle")
        for i in range(0, 9, len(order)):
            p.path([(left + i * size, y - 2), (left + i * size, y + 28)], "strong")
        word = "0x" + "".join(2 * letter for letter in reversed(order)) if len(order) == 4 else ""
        p.text(left + 8 * size + 24, y + 18, word, "mono")
    return p


def planes():
    p = Picture(640, 250, "Planes, steps and negative steps")
    size, columns, rows, width = 24, 10, 4, 7

    def plane(x, title, pointer_row, down):
        p.text(x, 24, title, "title")
        for r in range(rows):
            for c in range(columns):
                kind = "luma" if c < width else "pad"
                p.box(x + c * size, 70 + r * size, size, size, f"{kind} cell")
                if c < width:
                    row = r if down else rows - 1 - r
                    p.text(x + (c + 0.5) * size, 70 + (r + 0.65) * size, f"{row},{c}", "ink small", "middle")
        y = 70 + (pointer_row + 0.5) * size
        p.arrow(x - 32, y, x - 2, y)
        p.text(x - 34, y - 6, "p", "note title", "end")
        p.text(x, 60, f"width {width}", "faint")
        p.path([(x, 65), (x + width * size, 65)], "strong")
        bottom = 70 + rows * size
        p.path([(x, bottom + 8), (x + columns * size, bottom + 8)], "strong")
        p.text(x + columns * size / 2, bottom + 24, f"{columns} bytes from row to row", "faint", "middle")
        step = columns if down else -columns
        p.text(x, bottom + 48, f"step = {step}", "mono")
        p.text(x, bottom + 66, f"sample r,c at p + r * {f'({step})' if step < 0 else step} + c", "mono")

    plane(54, "Positive: row 0 at the lowest address", 0, True)
    plane(370, "Negative: row 0 at the highest", rows - 1, False)
    return p


def chroma_sites():
    p = Picture(640, 212, "Where chroma samples lie between pixels")
    size, pixels, lines = 16, 8, 4
    for panel, (name, across, down) in enumerate((("4:4:4", 1, 1), ("4:2:2", 2, 1), ("4:2:0", 2, 2), ("4:1:1", 4, 1))):
        x, y = 20 + panel * 156, 44
        p.text(x, 28, name, "title")
        for r in range(lines):
            for c in range(pixels):
                p.box(x + c * size, y + r * size + r * 6, size, size, "luma cell")
        for r in range(0, lines, down):
            for c in range(0, pixels, across):
                cy = y + (r + down / 2) * size + (r + (down - 1) / 2) * 6
                p.disc(x + (c + across / 2) * size, cy, 4, "chroma")
    y = 156
    p.box(20, y - 11, 14, 14, "luma cell")
    p.text(42, y, "pixel, with its luma in the middle")
    p.disc(267, y - 4, 4, "chroma")
    p.text(280, y, "one Cb and one Cr (or U and V)")
    p.text(20, y + 24, "Chroma lies in the middle of the pixels it was averaged from, as in JPEG and H.261; the bilinear", "faint small")
    p.text(20, y + 40, "up-samplers take it to lie there. Nearest forms and the YUV display family give it to those pixels as it is.", "faint small")
    return p


def up_weights():
    p = Picture(640, 236, "Weights of the bilinear up-samplers")

    def weigh(source, output, weight):
        (sx, sy), (ox, oy) = source, output
        p.path([source, output], "line")
        p.box(sx + 0.45 * (ox - sx) - 8, sy + 0.45 * (oy - sy) - 9, 16, 17, "paper")
        p.text(sx + 0.45 * (ox - sx), sy + 0.45 * (oy - sy) + 4, str(weight), "note title", "middle")

    def mark(place, kind, name, above=True):
        x, y = place
        p.disc(x, y, 6, kind) if kind == "chroma" else p.box(x - 6, y - 6, 12, 12, kind)
        p.text(x, y - 13 if above else y + 22, name, "mono small", "middle")

    p.text(20, 24, "4:2:2 to 4:4:4, quarters", "title")
    sources = [(50 + 110 * k, 74) for k in range(3)]
    outputs = [(160 - 27.5, 158), (160 + 27.5, 158)]
    for output, weights in zip(outputs, (((0, 1), (1, 3)), ((1, 3), (2, 1)))):
        for k, weight in weights:
            weigh(sources[k], output, weight)
    for place, name in zip(sources, ("s[j-1]", "s[j]", "s[j+1]")):
        mark(place, "chroma", name)
    p.box(outputs[0][0] - 6, 152, 12, 12, "luma cell")
    p.box(outputs[1][0] - 6, 152, 12, 12, "luma cell")
    p.text(outputs[0][0] + 8, 180, "out[2j]", "mono small", "end")
    p.text(outputs[1][0] - 8, 180, "out[2j+1]", "mono small")
    p.text(20, 208, "Even outputs add 1 before the shift, odd ones 2;", "faint small")
    p.text(20, 223, "the first and the last output are the source sample.", "faint small")

    p.text(350, 24, "4:2:0 to 4:4:4, sixteenths", "title")
    corners = {(c, r): (400 + 170 * c, 74 + 90 * r) for c in range(2) for r in range(2)}
    output = (400 + 0.75 * 170, 74 + 0.75 * 90)
    for corner, weight in (((0, 0), 1), ((1, 0), 3), ((0, 1), 3)):
        weigh(corners[corner], output, weight)
    p.path([corners[1, 1], output], "line")
    p.text(output[0] + 30, output[1] + 4, "9", "note title")
    for (c, r), place in corners.items():
        mark(place, "chroma", f"{('prev', 'cur')[r]}[{('j-1', 'j')[c]}]", above=r == 0)
    p.box(output[0] - 6, output[1] - 6, 12, 12, "luma cell")
    p.text(output[0] - 4, output[1] + 26, "out0[2j]", "mono small", "end")
    p.text(350, 208, "Even outputs add 8 before the shift, odd ones 7;", "faint small")
    p.text(350, 223, "the lower row takes next in the place of prev.", "faint small")
    return p


def odd_sizes():
    p = Picture(640, 330, "What odd widths and heights cover")
    size = 17

    def picture(x, y, title, note, covered):
        p.text(x, y, title, "title small")
        for r in range(5):
            for c in range(7):
                p.box(x + c * size, y + 10 + r * size, size, size, ("b" if covered(c, r) else "pad") + " cell")
        p.text(x, y + 10 + 5 * size + 15, note, "faint small")

    p.text(20, 24, "A picture of 7 x 5 pixels: blue is converted", "title")
    picture(20, 50, "YUV display, 4:2:0", "even part of both", lambda c, r: c < 6 and r < 4)
    picture(176, 50, "YUV display, 4:1:1", "whole groups of four", lambda c, r: c < 4)
    picture(332, 50, "YUV display, 4:4:4", "all", lambda c, r: True)
    picture(488, 50, "window of 4:2:0", "any rectangle", lambda c, r: 1 <= c < 6 and 1 <= r < 4)

    p.text(20, 196, "Down-sampling a row: which source samples make outputs", "title")
    for k, length in enumerate((4, 5, 6, 7, 8)):
        x, y = 20 + (k % 3) * 210, 212 + (k // 3) * 58
        p.text(x, y + 13, f"len {length}", "small")
        outputs = length // 4 * 2 + (length % 4 != 0)
        for c in range(max(length, 2 * outputs)):
            used, inside = c < 2 * outputs, c < length
            kind = "r" if not inside else "b" if used else "pad"
            p.box(x + 40 + c * size, y, size, size, f"{kind} cell")
        for k_out in range(outputs):
            left = x + 40 + 2 * k_out * size
            p.path([(left + 3, y + size + 4), (left + 2 * size - 3, y + size + 4)], "strong")
            p.text(left + size, y + size + 17, str(k_out), "small", "middle")
    x, y = 440, 270
    for kind, text in (("b", "averaged in pairs into an output"), ("pad", "ignored"), ("r", "read past the row")):
        p.box(x, y, 14, 14, f"{kind} cell")
        p.text(x + 20, y + 11, text, "small")
        y += 19
    return p


def rows_of(section):
    """Lines of numbers behind their names, which may take two columns."""
    rows = {}
    for line in section.splitlines():
        cells = line.split("|")
        names = [cell for cell in cells if not re.fullmatch(r"-?[\d.]+", cell)]
        rows[tuple(names)] = [float(cell) for cell in cells[len(names):]]
    return rows


def color_error(section):
    rows = rows_of(section)
    conversions = list(dict.fromkeys(conversion for conversion, _ in rows))
    wide, high, left, top, pitch = 156, 34, 132, 58, 62
    p = Picture(left + 3 * (wide + 10) + 8, top + pitch * len(conversions) + 8, "Error of the colour conversions")
    p.text(16, 22, "Result minus exact value, in steps of 1/16", "title")
    p.text(16, 38, "Inputs whose exact value lies in the range of results. The lines stand at 1/2, which the best rounding leaves.", "faint small")
    x_of = lambda x0, error: x0 + wide * (error + 2) / 4
    for row, conversion in enumerate(conversions):
        y = top + row * pitch
        main, _, bits = conversion.partition(", ")
        p.text(16, y + 24, main)
        if bits:
            p.text(16, y + 39, bits, "faint small")
        for column, (component, bins) in enumerate((c, b) for (name, c), b in rows.items() if name == conversion):
            x0, highest = left + column * (wide + 10), max(bins)
            outline = f"M{x0} {y + high}"
            for i, bin in enumerate(bins):
                outline += f"V{y + high * (1 - bin / highest):.1f}H{x_of(x0, (i + 1) / 16 - 2):.1f}"
            p.add(f'<path d="{outline}V{y + high}" class="bar"/>')
            p.path([(x0, y + high), (x0 + wide, y + high)], "line")
            for edge in (-0.5, 0.5):
                p.path([(x_of(x0, edge), y - 2), (x_of(x0, edge), y + high)], "exact")
            p.text(x0 + 2, y + 11, component, "title small")
            for tick in (-2, -1, 0, 1, 2):
                anchor = {-2: "start", 2: "end"}.get(tick, "middle")
                p.text(x_of(x0, tick), y + high + 12, f"{tick:+d}" if tick else "0", "faint small", anchor)
    return p


def sampler_error(section):
    rows = {name[0]: values for name, values in rows_of(section).items()}
    names = [name for name in rows if f"{name} exact" in rows]
    p = Picture(640, 250, "Rounding of the samplers along a ramp")
    p.text(16, 22, "Result minus exact value along a ramp of slope 1", "title")
    p.text(16, 38, "Even outputs blue, odd ones orange; end samples included.", "faint small")
    for k, name in enumerate(names):
        x, y, wide, half = 60 + (k % 2) * 310, 96 + (k // 2) * 100, 240, 30
        p.text(x - 44, y - 40, name, "title small")
        for level in (-0.5, 0, 0.5):
            p.path([(x, y - 2 * half * level), (x + wide, y - 2 * half * level)], "strong" if level == 0 else "grid")
            p.text(x - 6, y - 2 * half * level + 4, f"{level:+g}" if level else "0", "faint small", "end")
        errors = [value - exact for value, exact in zip(rows[name], rows[f"{name} exact"])]
        for i, error in enumerate(errors):
            cx, cy = x + (i + 0.5) * wide / len(errors), y - 2 * half * error
            p.path([(cx, y), (cx, cy)], "line")
            p.disc(cx, cy, 3, "mark" if i % 2 else "bar")
    return p


def sampler_edge(section):
    rows = {name[0]: values for name, values in rows_of(section).items()}
    p = Picture(640, 232, "An edge through the up-samplers")
    left, right, top, bottom = 50, 620, 40, 190
    count = len(rows["source"])
    x_of = lambda position: left + (right - left) * (position + 0.5) / count
    y_of = lambda value: bottom - (bottom - top) * (value - 40) / 180
    p.text(16, 22, "An edge of chroma, 4:2:2 to 4:4:4", "title")
    for value in (60, 200):
        p.path([(left, y_of(value)), (right, y_of(value))], "grid")
        p.text(left - 8, y_of(value) + 4, str(value), "faint small", "end")
    exact = rows["UpSample422_BL exact"]
    p.path([(x_of(i / 2 - 0.25), y_of(value)) for i, value in enumerate(exact)], "exact")
    for i, value in enumerate(rows["UpSample_NN"]):
        p.box(x_of(i / 2 - 0.25) - 5, y_of(value) - 5, 10, 10, "hollow")
    for i, value in enumerate(rows["UpSample422_BL"]):
        p.disc(x_of(i / 2 - 0.25), y_of(value), 3.2, "bar")
    for i, value in enumerate(rows["source"]):
        p.disc(x_of(i), y_of(value), 5, "chroma")
    y = 218
    for x, mark, text in ((50, "chroma", "source"), (140, "bar", "bilinear"), (236, "hollow", "nearest")):
        p.box(x - 5, y - 9, 10, 10, mark) if mark == "hollow" else p.disc(x, y - 4, 5 if mark == "chroma" else 3.2, mark)
        p.text(x + 12, y, text, "small")
    p.path([(330, y - 4), (354, y - 4)], "exact")
    p.text(362, y, "real-valued bilinear filter", "small")
    return p


class Timing:
    def __init__(self, family, cells):
        self.operation, _, self.shape = cells["operation/shape"].partition("/")
        self.family = family
        self.ours = float(cells["ours"])
        self.over_plain = float(cells["plain/ours"])
        self.over_sse2 = float(cells["SSE2/ours"]) if cells["SSE2/ours"] else None
        self.cells = cells


def timings(results):
    family, head, found = None, None, []
    for line in results.splitlines():
        if line.startswith("## "):
            family, head = line[3:], None
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if cells[0] == "operation/shape" and "ours" in cells:
            head = cells
        elif head and len(cells) == len(head) and "/" in cells[0]:
            found.append(Timing(family, dict(zip(head, cells))))
    return found


FAMILIES = {  # shown as: of which family and operations
    "transforms": ("dct", ""),
    "quantization": ("quant", r"(De)?Quantize(Init)?_16S(_I)?$"),
    "motion compensation": ("mc", ""),
    "loop filter": ("filter", ""),
    "resampling": ("resample", ""),
    "RGB, CMYK to YCC": ("color", r"Color\w+2YCC"),
    "YCC to RGB, CMYK": ("color", r"ColorYCC"),
    "YUV to RGB, display": ("color", r"ColorYUV"),
    "reorder, merge, split": ("color", r"Color(?!\w*(YCC|YUV))"),
}


def mean(values):
    return math.exp(sum(map(math.log, values)) / len(values))


def speed(results):
    all_timings = timings(results)
    wide, left, top, pitch = 420, 160, 66, 28
    p = Picture(640, top + pitch * len(FAMILIES) + 30, "Speed by family")
    ticks = (0.5, 1, 2, 4, 8, 16)
    lowest, highest = math.log(0.35), math.log(26)
    x_of = lambda ratio: left + wide * (math.log(ratio) - lowest) / (highest - lowest)
    p.text(16, 22, "Times as fast as plain C", "title")
    p.text(16, 40, "a dot for each operation and size; bar and number: geometric mean; ring: mean against SSE2 code of others", "faint small")
    bottom = top + pitch * len(FAMILIES)
    for tick in ticks:
        p.path([(x_of(tick), top - 4), (x_of(tick), bottom)], "line" if tick == 1 else "grid")
        p.text(x_of(tick), bottom + 16, f"{tick:g}", "faint small", "middle")
    for row, (name, (family, operations)) in enumerate(FAMILIES.items()):
        y = top + pitch * row + pitch / 2
        of_family = [t for t in all_timings if t.family == family and re.match(operations, t.operation)]
        p.text(left - 10, y + 4, name, "", "end")
        for t in of_family:
            p.disc(x_of(t.over_plain), y, 3.2, "dot")
        average = mean([t.over_plain for t in of_family])
        p.box(x_of(average) - 1.5, y - 10, 3, 20, "mark")
        peers = [t.over_sse2 for t in of_family if t.over_sse2]
        if peers:
            p.disc(x_of(mean(peers)), y, 6, "hollow")
        p.text(624, y + 4, f"{average:.1f}", "", "end")
    return p


def inverse_speed(results):
    found = [t for t in timings(results) if t.operation.startswith("DCT8x8Inv")]
    kinds = {"dense": "dense block", "10 coefficients": "10 coefficients, all in the first quarter", "DC only": "DC only"}
    p = Picture(640, 50 + 20 * len(found) + 22 * len(kinds), "Time of the inverse transforms")
    p.text(16, 24, "Nanoseconds for a block", "title")
    left, wide, y = 250, 320, 40
    highest = max(t.ours for t in found)
    for shape, title in kinds.items():
        p.text(16, y + 14, title, "faint")
        y += 22
        for t in sorted((t for t in found if t.shape == shape), key=lambda t: t.ours):
            p.text(left - 8, y + 12, t.operation, "mono", "end")
            p.box(left, y + 3, max(1, wide * t.ours / highest), 12, "bar")
            p.text(left + wide * t.ours / highest + 6, y + 13, f"{t.ours:.3g}", "small")
            y += 20
    return p


def from_measurements(sections):
    """Pictures under their names: those that only explain, and those of what tools/measure prints."""
    return {
        "byte-orders": byte_orders(), "planes": planes(), "chroma-sites": chroma_sites(), "up-weights": up_weights(),
        "odd-sizes": odd_sizes(), "color-error": color_error(sections["color-bins"]),
        "sampler-error": sampler_error(sections["sampler-ramp"]),
        "sampler-edge": sampler_edge(sections["sampler-edge"])
    }


def from_benchmarks(results):
    """Pictures under their names: those of the table of the benchmarks."""
    return {"speed": speed(results), "inverse-speed": inverse_speed(results)}
