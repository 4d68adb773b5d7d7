# SPDX-License-Identifier: MIT
"""What the programs of benchmarks/ have measured: reads it, compares it with earlier figures, and makes
the tables and pictures of docs/performance.md."""
import dataclasses, html, math, re

MOST_GROWTH = 1.2  # of a ratio, beside the committed one
CONFIRMATIONS = 2  # of what is worse
LEAST_SHARE = 0.01  # hundred parts of a core: what is less is chance
COUNTED = ("MiB", "")  # units of what is hardly another machine's than this one's; "" is that of bare numbers
PEERS = "peers"  # the program whose figures are of other map programs


@dataclasses.dataclass
class Figure:
    """What was measured beside a peer: a line of tests/support/figure.h, and the program it is from."""
    program: str
    what: str
    unit: str
    own: float
    peer_name: str
    peer: float
    ratio: float  # own / peer; 0 where there is no peer
    aim_of: str  # nothing, ratio, own or difference
    aim: float
    better: str  # lower or higher

    @property
    def key(self):
        return self.program, self.what, self.peer_name

    @property
    def against_aim(self):
        return {"nothing": None, "ratio": self.ratio, "own": self.own, "difference": self.own - self.peer}[self.aim_of]

    @property
    def met(self):
        """None without an aim."""
        if self.aim_of == "nothing":
            return None
        return self.against_aim <= self.aim if self.better == "lower" else self.against_aim >= self.aim

    @property
    def compared(self):
        """What means the same on another machine: the ratio, or without a peer what was counted; None if nothing."""
        if self.peer_name:
            return self.ratio if self.peer else None
        return self.own if self.unit in COUNTED else None

    def growth(self, before):
        """How many times worse it is than before: 1 as it was, below 1 better."""
        now, then = self.compared, before.compared
        if None in (now, then) or now == then:
            return 1.0
        if self.unit == "%" and max(self.own, before.own) <= LEAST_SHARE:
            return 1.0
        more, less = (now, then) if self.better == "lower" else (then, now)
        return more / less if less else math.inf


@dataclasses.dataclass
class Point:
    """A place on a growth curve."""
    program: str
    curve: str
    axis: str
    x: float
    unit: str
    own: float
    peer_name: str
    peer: float


@dataclasses.dataclass
class Run:
    """Of one program, whose figures and points are from there."""
    program: str
    when: str  # the date, and what was measured
    machine: str


KINDS = {"figure": Figure, "point": Point, "run": Run}


def read(lines):
    """Figures, points and runs of lines such as "figure TAB program TAB what ..."."""
    found = {kind: [] for kind in KINDS}
    for line in filter(None, (line.rstrip("\n") for line in lines)):
        kind, *words = line.split("\t")
        fields = dataclasses.fields(KINDS[kind])
        if len(words) != len(fields):
            raise ValueError(f"not a line of figures: {line!r}")
        found[kind].append(KINDS[kind](*(field.type(word) for field, word in zip(fields, words))))
    return tuple(found.values())


def lines_of(*lists):
    return "".join("\t".join([kind, *(f"{word:.6g}" if isinstance(word, float) else word
                                      for word in dataclasses.astuple(one))]) + "\n"
                   for kind, all_of_it in zip(KINDS, lists) for one in all_of_it)


def of(lists, programs):
    """What read() gave, of some programs alone."""
    return tuple([one for one in rows if one.program in programs] for rows in lists)


def merged(before, now, measured, programs):
    """What read() gave before, with what there is now of the programs that were measured: a program's rows after the
    other's, without those of programs that are no more."""
    parts = [of(now if program in measured else before, [program]) for program in programs]
    return tuple(sum(lists, []) for lists in zip(*parts))


def compare(before, now):
    """Figures that are worse by more than MOST_GROWTH, with those of before; and what is measured no more."""
    known = {figure.key: figure for figure in before}
    worse = [(known[figure.key], figure) for figure in now
             if figure.key in known and figure.growth(known[figure.key]) > MOST_GROWTH]
    seen = {figure.key for figure in now}
    return worse, [figure for figure in before if figure.key not in seen]


def confirmed(before, names, measure, tell):
    """What compare() gives, without what is not worse each time that it is measured: `measure` gives the figures
    of some programs, and `tell` hears what is to be measured again."""
    worse, gone = compare(before, measure(names))
    for _ in range(CONFIRMATIONS):
        if not worse:
            break
        tell(worse)
        suspects = {old.key for old, _ in worse}
        again = measure(sorted({program for program, _, _ in suspects}))
        worse = [pair for pair in compare(before, again)[0] if pair[0].key in suspects]
    return worse, gone


def number(value):
    """Three digits, as people write them."""
    if value == 0:
        return "0"
    digits = max(0, 2 - math.floor(math.log10(abs(value))))
    rounded = f"{value:,.{digits}f}"
    return rounded.rstrip("0").rstrip(".") if "." in rounded else rounded


def with_unit(value, unit):
    return f"{number(value)} {unit}".strip()


def aim_text(figure):
    bound = "" if figure.better == "lower" else "at least "
    return {"nothing": "", "ratio": f"{bound}{number(figure.aim)} times",
            "own": bound + with_unit(figure.aim, figure.unit),
            "difference": f"{bound}{with_unit(figure.aim, figure.unit)} more"}[figure.aim_of]


def row(figure, mark=""):
    peer = f"{figure.peer_name}: {with_unit(figure.peer, figure.unit)}" if figure.peer_name else ""
    times = number(figure.ratio) if figure.ratio else ""
    met = {None: "", True: "yes", False: "**no**"}[figure.met]
    if figure.aim_of == "difference":
        met += f", {with_unit(figure.against_aim, figure.unit)}"
    return f"| {figure.what}{mark} | {with_unit(figure.own, figure.unit)} | {peer} | {times} | {aim_text(figure)} | {met} |"


def table(figures, marks={}):
    """With the marks of programs at their rows."""
    return "\n".join(["| what | ours | beside it | times | aim | met |", "|---|---|---|---|---|---|",
                      *(row(figure, marks.get(figure.program, "")) for figure in figures)]) + "\n"


def origins(runs):
    """Where figures are from, in words, and the marks of programs whose are not from where those of most are."""
    programs = {}
    for run in runs:
        programs.setdefault(f"{run.when}: {run.machine}.\n", []).append(run.program)
    first, *others = sorted(programs, key=lambda origin: -len(programs[origin]))
    words, marks = first, {}
    for place, origin in enumerate(others, 2):
        words += f"\nRows with ({place}): {origin}"
        marks |= {program: f" ({place})" for program in programs[origin]}
    return words, marks


def peers_table(figures):
    """A row for each thing that was measured, a column for each program."""
    names, rows = [], {}
    for figure in figures:
        names += [figure.peer_name] if figure.peer_name not in names else []
        cells = rows.setdefault(figure.what, {"ours": with_unit(figure.own, figure.unit)})
        cells[figure.peer_name] = with_unit(figure.peer, figure.unit)
    columns = ["ours", *names]
    head = [f"| | {' | '.join(['Raincast', *names])} |", "|---" * (len(columns) + 1) + "|"]
    return "\n".join(head + [f"| {what} | {' | '.join(cells.get(name, '') for name in columns)} |"
                             for what, cells in rows.items()]) + "\n"


def between(text, name, inside):
    """The text with what stands between the marks of that name replaced."""
    begin, end = f"<!-- {name}: written by ./bench -->\n", f"<!-- end of {name} -->\n"
    before, rest = text.split(begin)
    return before + begin + "\n" + inside + "\n" + end + rest.split(end)[1]


# Pictures of curves ---------------------------------------------------------------------------------

WIDTH, HEIGHT = 440, 260
LEFT, RIGHT, TOP, BOTTOM = 58, 30, 52, 46
STYLE = """text { font: 12px sans-serif; fill: #24292f; } .title { font-weight: bold; }
.grid { stroke: #d0d7de; } .own { stroke: #0969da; } .peer { stroke: #8c6d1f; stroke-dasharray: 5 3; }
polyline { fill: none; stroke-width: 2; } .end { text-anchor: end; } .middle { text-anchor: middle; }
text.own { fill: #0969da; stroke: none; } text.peer { fill: #8c6d1f; stroke: none; }
@media (prefers-color-scheme: dark) { text { fill: #d0d7de; } .grid { stroke: #3d444d; }
.own { stroke: #58a6ff; } .peer { stroke: #d4b04a; } text.own { fill: #58a6ff; } text.peer { fill: #d4b04a; } }"""


def file_name(curve):
    return "growth-" + re.sub(r"[^a-z0-9]+", "-", curve.lower()).strip("-") + ".svg"


def nice_top(most):
    """The least of these numbers and their tenfolds that is not below: quarters of them are short."""
    power = 10 ** math.floor(math.log10(most)) if most > 0 else 1
    return next(power * step for step in (1, 1.2, 1.6, 2, 3, 4, 6, 8, 10) if power * step >= most * 0.999)


def line(points, across, up, values, kind):
    places = " ".join(f"{across(point.x):.1f},{up(value):.1f}" for point, value in zip(points, values))
    return f'<polyline class="{kind}" points="{places}"/>\n'


def svg(points):
    """The curve of points that are of the same one, as a small picture."""
    points = sorted(points, key=lambda point: point.x)
    first = points[0]
    top = nice_top(max(max(point.own, point.peer) for point in points))
    least, most = points[0].x, points[-1].x
    scale = math.log if least > 0 and most / least > 30 else float
    span = (scale(most) - scale(least)) or 1.0

    def across(x):
        return LEFT + (WIDTH - LEFT - RIGHT) * (scale(x) - scale(least)) / span

    def up(y):
        return HEIGHT - BOTTOM - (HEIGHT - TOP - BOTTOM) * y / top

    def text(x, y, words, kind):
        return f'<text x="{x:.0f}" y="{y:.0f}" class="{kind}">{html.escape(words)}</text>\n'

    drawn = ""
    for quarter in range(5):
        value = top * quarter / 4
        drawn += f'<line class="grid" x1="{LEFT}" x2="{WIDTH - RIGHT}" y1="{up(value):.1f}" y2="{up(value):.1f}"/>\n'
        drawn += text(LEFT - 6, up(value) + 4, number(value), "end")
    for point in points:
        drawn += text(across(point.x), HEIGHT - BOTTOM + 17, number(point.x), "middle")
    drawn += text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - 8, first.axis, "middle")
    drawn += text(8, 17, f"{first.curve}, {first.unit}", "title")
    drawn += text(8, 33, "ours", "own") + (text(46, 33, first.peer_name, "peer") if first.peer_name else "")
    if first.peer_name:
        drawn += line(points, across, up, [point.peer for point in points], "peer")
    drawn += line(points, across, up, [point.own for point in points], "own")
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
            f'viewBox="0 0 {WIDTH} {HEIGHT}">\n<style>{STYLE}</style>\n{drawn}</svg>\n')


def curves(points):
    """The points of each curve, by its name."""
    found = {}
    for point in points:
        found.setdefault(point.curve, []).append(point)
    return found
