#!/usr/bin/env python3
"""Turns a run of pqx_bench into a table: report.py RUN.json [TABLE.md CHART.svg]

A time is the shortest of its repetitions, which lie scattered over the whole run.
"""
import json
import math
import re
import statistics
import sys
from html import escape

TOLERANCE = 0.9  # of a target ratio
NOT_SLOWER = 0.05
NOISE = 0.1  # taken for such at most where libraries are compared


class Contender:
    def __init__(self, name):
        self.name, self.times, self.label, self.counters = name, [], "", {}

    @property
    def time(self):
        return min(self.times)

    @property
    def spread(self):
        lower_quartile = sorted(self.times)[len(self.times) // 4]
        return lower_quartile / self.time - 1


class Line:
    """One operation at one shape, with everybody who was timed at it."""

    def __init__(self, family, operation, shape):
        self.family, self.operation, self.shape, self.contenders = family, operation, shape, {}

    def finish(self):
        self.ours, self.plain = self.contenders.pop("ours"), self.contenders.pop("plain C")
        peers = list(self.contenders.values())
        fastest = lambda some: min(some, key=lambda c: c.time, default=None)
        self.limited = [c for c in peers if c.name.endswith(" SSE2")]
        self.sse2_peer, self.best_peer = fastest(self.limited), fastest(peers)
        self.unit = self.ours.label
        self.target = self.ours.counters["target"]
        self.spread = max(self.ours.spread, self.plain.spread)
        self.reached = self.is_reached()

    def over(self, contender):
        return contender.time / self.ours.time if contender else None

    def is_reached(self):
        floor = self.target * TOLERANCE if self.target > 1 else 1 - max(NOT_SLOWER, self.spread)
        if self.over(self.plain) < floor:
            return False
        if not self.ours.counters["against_peers"]:
            return True
        same_work = [c for c in self.limited if not c.label]
        return all(self.over(c) >= 1 - min(NOISE, max(self.ours.spread, c.spread)) for c in same_work)


def read(path):
    with open(path) as file:
        run = json.load(file)
    lines = {}
    timings = [entry for entry in run["benchmarks"] if entry["run_type"] == "iteration"]
    for entry in sorted(timings, key=lambda entry: entry["family_index"]):
        family, operation, shape, name = entry["run_name"].split("/")
        line = lines.setdefault((family, operation, shape), Line(family, operation, shape))
        contender = line.contenders.setdefault(name, Contender(name))
        contender.times.append(entry["cpu_time"] / entry["units"])
        contender.label = entry.get("label", "")
        contender.counters = entry
    for line in lines.values():
        line.finish()
    return run["context"], list(lines.values())


def number(x):
    if x is None:
        return ""
    return f"{x:.{max(0, 2 - math.floor(math.log10(x)))}f}" if x < 100 else f"{x:.0f}"


def ratio(x):
    return "" if x is None else f"{x:.2f}"


def geometric_mean(values):
    values = [v for v in values if v]
    return math.exp(statistics.fmean(map(math.log, values))) if values else None


def machine(context):
    with open("/proc/cpuinfo") as file:
        model = re.search(r"model name\s*: (.*)", file.read())
    return model.group(1) if model else "unknown processor"


def table(rows):
    """Markdown whose columns also line up as text."""
    widths = [max(len(row[i]) for row in rows) for i in range(len(rows[0]))]
    form = lambda row: "| " + " | ".join(
        cell.ljust(w) if i == 0 else cell.rjust(w) for i, (cell, w) in enumerate(zip(row, widths))) + " |"
    rule = "|" + "|".join("-" * (w + 2) if i == 0 else "-" * (w + 1) + ":" for i, w in enumerate(widths)) + "|"
    return [form(rows[0]), rule] + [form(row) for row in rows[1:]]


def summary(lines):
    def row(title, some):
        def mean(peer):
            values = [v for v in (l.over(peer(l)) for l in some) if v]
            return f"{geometric_mean(values):.2f} ({len(values)})" if values else ""

        return [title, f"{sum(l.reached for l in some)} of {len(some)}", mean(lambda l: l.plain),
                mean(lambda l: l.sse2_peer), mean(lambda l: l.best_peer)]

    pictures = [l for l in lines if re.fullmatch(r"\d+x\d{3,}", l.shape)]
    others = [l for l in lines if l not in pictures]
    inexact_peers = lambda l: l.family == "quant" or l.operation.startswith("DCT8x8")
    rows = [row(family, [l for l in lines if l.family == family]) for family in dict.fromkeys(l.family for l in lines)]
    rows += [row("all, whole pictures", pictures), row("all, in cache", others),
             row("the latter without transforms and quantizers", [l for l in others if not inexact_peers(l)]),
             row("all", lines)]
    return [r for r in rows if not r[1].endswith(" of 0")]


def report(context, lines):
    notes = {}

    def named(contender):
        if not contender:
            return ""
        mark = ""
        if contender.label:
            mark = f" [{notes.setdefault(contender.label, len(notes) + 1)}]"
        return f"{number(contender.time)} {contender.name.removesuffix(' SSE2')}{mark}"

    out = ["# Benchmarks", ""]
    out += [f"{machine(context)}; " + "; ".join(f"{name} {context[name]}" for name in
            ("compiler", "libyuv", "libjpeg-turbo", "FFmpeg", "OpenCV") if name in context) + ".", ""]
    out += ["Times are nanoseconds for each unit: the shortest of the repetitions, which lie scattered over the run. "
            "The library is linked statically, as plain C is. "
            "*instr.* counts our instructions for a block or for 16 of a smaller unit, calls and ends of rows included. ± tells how far the times' lower quartile lies above the shortest. *plain C* is the operation as a plain loop, compiled with -O3 "
            "for the same instruction set; *SSE2 peer* the fastest other library when limited to SSE2, *best peer* when "
            "free to use what the processor has. Rows marked *odd* begin at odd addresses. Ratios are their time over ours. The *target* is a ratio to plain C, "
            "reached within 10 %; 1 means not slower than plain C by more than 5 % or the spread, and for whole "
            "pictures also not slower than an SSE2 peer at the same work.", ""]

    out += ["## Summary", "", "Geometric means, and in brackets of how many lines.", ""]
    out += table([["lines", "at target", "plain/ours", "SSE2/ours", "best/ours"]] + summary(lines))
    short = sorted((l for l in lines if not l.reached), key=lambda l: l.over(l.plain) / l.target)
    if short:
        out += ["", "Farthest from their target:", ""]
        out += table([["operation/shape", "plain/ours", "target", "SSE2/ours", "±"]] +
                     [[f"{l.operation}/{l.shape}", ratio(l.over(l.plain)), ratio(l.target), ratio(l.over(l.sse2_peer)),
                       f"{l.spread:.0%}"] for l in short[:10]])

    for family in dict.fromkeys(line.family for line in lines):
        rows = [["operation/shape", "unit", "instr.", "ours", "plain C", "SSE2 peer", "best peer", "plain/ours", "SSE2/ours",
                 "best/ours", "target", "reached", "±"]]
        for l in lines:
            if l.family == family:
                instructions = l.ours.counters["instructions"] * (1 if l.unit == "block" else 16)
                rows.append([f"{l.operation}/{l.shape}", l.unit, f"{instructions:.0f}" if instructions else "", number(l.ours.time), number(l.plain.time),
                             named(l.sse2_peer), named(l.best_peer), ratio(l.over(l.plain)),
                             ratio(l.over(l.sse2_peer)), ratio(l.over(l.best_peer)), ratio(l.target),
                             "yes" if l.reached else "no", f"{l.spread:.0%}"])
        out += ["", f"## {family}", ""] + table(rows)
    if notes:
        out += ["", "Peers whose work is not quite ours:", ""]
        out += [f"- [{n}] {text}" for text, n in notes.items()]
    return "\n".join(out) + "\n"


def chart(lines):
    """Speed-up over plain C of every operation at its own shape: short rows and whole pictures are left out."""
    shown = [l for l in lines if l.ours.counters["charted"]]
    name_of = lambda l: l.operation if l.shape == "1920x2" else f"{l.operation}, {l.shape}"
    left = 20 + int(6.3 * max(len(name_of(l)) for l in shown))
    scale_width, row_height, top = 560, 16, 64
    highest = max(2, math.ceil(max(max(l.over(l.plain), l.target) for l in shown)))
    x = lambda speed_up: left + scale_width * speed_up / highest
    body, y = [], top
    for family in dict.fromkeys(l.family for l in shown):
        y += 10
        body.append(f'<text x="10" y="{y + 12}" class="family">{escape(family)}</text>')
        y += row_height + 4
        for l in (l for l in shown if l.family == family):
            speed_up = l.over(l.plain)
            body.append(f'<text x="{left - 6}" y="{y + 11}" text-anchor="end">{escape(name_of(l))}</text>')
            body.append(f'<rect x="{left}" y="{y + 2}" width="{x(speed_up) - left:.1f}" height="{row_height - 5}" class="bar"/>')
            if l.sse2_peer:
                body.append(f'<circle cx="{x(l.plain.time / l.sse2_peer.time):.1f}" cy="{y + 7.5}" r="3.2" class="peer{" other" if l.sse2_peer.label else ""}"/>')
            body.append(f'<path d="M{x(l.target):.1f} {y}v{row_height - 1}" class="target"/>')
            body.append(f'<text x="{left + scale_width + 34}" y="{y + 11}" text-anchor="end">{speed_up:.1f}</text>')
            y += row_height
    grid_step = 1 if highest <= 12 else 2
    grid = [f'<path d="M{x(v):.1f} {top}V{y + 6}" class="{"one" if v == 1 else "grid"}"/>'
            f'<text x="{x(v):.1f}" y="{top - 4}" text-anchor="middle" class="axis">{v}</text>'
            for v in range(0, highest + 1, grid_step)]
    width, height = left + scale_width + 44, y + 20
    legend = (f'<rect x="220" y="30" width="18" height="10" class="bar"/><text x="244" y="39">this library</text>'
              f'<path d="M340 28v14" class="target"/><text x="348" y="39">target</text>'
              f'<circle cx="412" cy="35" r="3.2" class="peer"/>'
              f'<text x="422" y="39">fastest other library limited to SSE2 (hollow: its work is not quite the same)</text>')
    return f"""<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}">
<style>
text {{ font: 11px sans-serif; fill: #222 }}
.title {{ font-size: 14px; font-weight: bold }} .family {{ font-size: 13px; font-weight: bold }}
.axis {{ fill: #666 }}
.bar {{ fill: #4a86c5 }} .target {{ stroke: #c0392b; stroke-width: 2; fill: none }}
.peer {{ fill: #f0a030; stroke: #7a4a00; stroke-width: 0.8 }}
.other {{ fill: #fff }}
.grid {{ stroke: #ddd; fill: none }} .one {{ stroke: #888; fill: none }}
</style>
<rect width="100%" height="100%" fill="#fff"/>
<text x="10" y="20" class="title">Times as fast as plain C</text>
{legend}
{"".join(grid)}
{chr(10).join(body)}
</svg>
"""


def main():
    context, lines = read(sys.argv[1])
    text = report(context, lines)
    print(text, end="")
    if len(sys.argv) > 2:
        with open(sys.argv[2], "w") as file:
            file.write(text.replace("# Benchmarks\n", "# Benchmarks\n\n![Times as fast as plain C](results.svg)\n", 1))
        with open(sys.argv[3], "w") as file:
            file.write(chart(lines))


main()
