#!/usr/bin/env python3
"""Turns a run of pqx_bench into a table: report.py RUN.json [TABLE.md CHART.svg]

A time is the shortest of its repetitions, which lie scattered over the whole run.
"""
import json
import math
import re
import statistics
import sys
import textwrap
from html import escape

# What differs by less than the spread of the two times counts as equal; these bound that.
LEAST_MARGIN, MOST_MARGIN = 0.05, 0.1


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

    @property
    def name(self):
        return f"{self.operation}/{self.shape}"

    def finish(self):
        self.ours, self.plain = self.contenders.pop("ours"), self.contenders.pop("plain C")
        self.last = self.contenders.pop("last release", None)
        peers = list(self.contenders.values())
        fastest = lambda some: min(some, key=lambda c: c.time, default=None)
        limited = [c for c in peers if c.name.endswith(" SSE2")]
        self.sse2_peer, self.best_peer = fastest(limited), fastest(peers)
        self.unit = self.ours.label
        self.spread = max(self.ours.spread, self.plain.spread)
        rivals = {"plain C": self.plain, "SSE2 peer": fastest(c for c in limited if not c.label),
                  "last release": self.last}
        self.behind = {rival: c for rival, c in rivals.items() if c and self.is_behind(c)}

    def over(self, contender):
        return contender.time / self.ours.time if contender else None

    def is_behind(self, contender):
        spread = max(self.ours.spread, contender.spread)
        return self.over(contender) < 1 - min(MOST_MARGIN, max(LEAST_MARGIN, spread))


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

        return [title, str(len(some)), mean(lambda l: l.plain), mean(lambda l: l.last), mean(lambda l: l.sse2_peer),
                mean(lambda l: l.best_peer), str(sum(bool(l.behind) for l in some))]

    families = dict.fromkeys(l.family for l in lines)
    pictures = [l for l in lines if re.fullmatch(r"\d+x\d{3,}", l.shape)]
    rows = [row(family, [l for l in lines if l.family == family]) for family in families]
    if len(rows) > 1:
        rows.append(row("all", lines))
    if pictures and len(pictures) < len(lines):
        rows += [row("whole pictures", pictures), row("in cache", [l for l in lines if l not in pictures])]
    return [["lines", "number", "plain/ours", "last/ours", "SSE2/ours", "best/ours", "behind"]] + rows


VERDICTS = {
    "plain C": "slower than plain C",
    "SSE2 peer": "behind another library that is limited to SSE2 and does the same work",
    "last release": "slower than the last release",
}


def verdicts(lines):
    out = []
    for rival, meaning in VERDICTS.items():
        some = [l for l in lines if rival in l.behind]
        if not some:
            measured = rival != "last release" or any(l.last for l in lines)
            out += ["", f"No line is {meaning}." if measured else "The last release was not measured."]
            continue
        out += ["", f"{len(some)} of {len(lines)} lines {'is' if len(some) == 1 else 'are'} {meaning}:", ""]
        rows = [[l.name, number(l.ours.time), f"{number(l.behind[rival].time)} {l.behind[rival].name.removesuffix(' SSE2')}",
                 ratio(l.over(l.behind[rival])), f"{l.ours.spread:.0%}", f"{l.behind[rival].spread:.0%}"]
                for l in sorted(some, key=lambda l: l.over(l.behind[rival]))]
        out += table([["operation/shape", "our ns", "their ns", "theirs/ours", "our ±", "their ±"]] + rows)
    return out


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
    out += textwrap.wrap("How many times as long as this library others take: geometric means, in brackets of how many "
                         "lines. A line is one operation at one size. The last column counts the lines in which "
                         "somebody is faster who should not be; they are listed below.", 120) + [""]
    out += table(summary(lines))
    out += verdicts(lines)
    out += ["", "## How this is measured", ""]
    out += [f"{machine(context)}; " + "; ".join(f"{name} {context[name]}" for name in
            ("last release", "compiler", "libyuv", "libjpeg-turbo", "FFmpeg", "OpenCV") if name in context) + ".", ""]
    out += textwrap.wrap(
        "Times are nanoseconds for a unit: the shortest of several repetitions, which lie scattered over one run of one "
        "process. ± is how far their lower quartile lies above the shortest. Everybody works on the same memory, and this "
        "library, the last release and plain C are shared objects, called through pointers.", 120)
    out += ["",
            "- *plain C*: the operation as a plain loop, compiled with -O3 for the same instruction set",
            "- *last release*: its library, built by the same compiler",
            "- *SSE2 peer*: the fastest other library when limited to SSE2; *best peer*: when free to use what the "
            "processor has; a number in brackets leads to what is different about its work",
            "- *instr.*: our instructions for a block or for 16 of a smaller unit, calls and ends of rows included",
            "- *plain/ours* and so on: their time over ours; above 1 we are faster",
            "- *behind*: who is faster by more than the spread of the two times, taken as at least "
            f"{LEAST_MARGIN:.0%} and at most {MOST_MARGIN:.0%}; of the SSE2 peers only those count whose work is the same",
            "- lines marked *odd* begin at odd addresses"]

    for family in dict.fromkeys(line.family for line in lines):
        rows = [["operation/shape", "unit", "instr.", "ours", "plain C", "last release", "SSE2 peer", "best peer",
                 "plain/ours", "last/ours", "SSE2/ours", "best/ours", "behind", "±"]]
        for l in lines:
            if l.family == family:
                instructions = l.ours.counters["instructions"] * (1 if l.unit == "block" else 16)
                rows.append([l.name, l.unit, f"{instructions:.0f}" if instructions else "", number(l.ours.time),
                             number(l.plain.time), number(l.last and l.last.time), named(l.sse2_peer), named(l.best_peer),
                             ratio(l.over(l.plain)), ratio(l.over(l.last)), ratio(l.over(l.sse2_peer)),
                             ratio(l.over(l.best_peer)), ", ".join(l.behind), f"{l.spread:.0%}"])
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
    highest = max(2, math.ceil(max(l.over(l.plain) for l in shown)))
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
            if l.last:
                body.append(f'<path d="M{x(l.plain.time / l.last.time):.1f} {y}v{row_height - 1}" class="last"/>')
            body.append(f'<text x="{left + scale_width + 34}" y="{y + 11}" text-anchor="end">{speed_up:.1f}</text>')
            y += row_height
    grid_step = 1 if highest <= 12 else 2
    grid = [f'<path d="M{x(v):.1f} {top}V{y + 6}" class="{"one" if v == 1 else "grid"}"/>'
            f'<text x="{x(v):.1f}" y="{top - 4}" text-anchor="middle" class="axis">{v}</text>'
            for v in range(0, highest + 1, grid_step)]
    width, height = left + scale_width + 44, y + 20
    legend = (f'<rect x="220" y="30" width="18" height="10" class="bar"/><text x="244" y="39">this library</text>'
              f'<path d="M340 28v14" class="last"/><text x="348" y="39">last release</text>'
              f'<circle cx="442" cy="35" r="3.2" class="peer"/>'
              f'<text x="452" y="39">fastest other library limited to SSE2 (hollow: its work is not quite the same)</text>')
    return f"""<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}">
<style>
text {{ font: 11px sans-serif; fill: #222 }}
.title {{ font-size: 14px; font-weight: bold }} .family {{ font-size: 13px; font-weight: bold }}
.axis {{ fill: #666 }}
.bar {{ fill: #4a86c5 }} .last {{ stroke: #c0392b; stroke-width: 2; fill: none }}
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
