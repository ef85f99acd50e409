"""Line plots on logarithmic axes, as SVG."""

import math
from dataclasses import dataclass, field
from html import escape

WIDTH, HEIGHT = 560, 360
LEFT, RIGHT, TOP, BOTTOM = 70, 90, 40, 50
COLOURS = ("#1f5fa8", "#c4631a")
DASHES = ("", "6 4")


def number(value: float) -> str:
    for unit, size in (("G", 1e9), ("M", 1e6), ("k", 1e3)):
        if value >= size:
            return f"{value / size:g}{unit}"
    return f"{value:g}"


def time(nanoseconds: float) -> str:
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:g} {unit}"
    return f"{nanoseconds:g} ns"


class Axis:
    """Whole decades, from one end to the other."""

    def __init__(self, values: list[float], begin: float, end: float):
        self.low = math.floor(math.log10(min(values)))
        self.high = max(math.ceil(math.log10(max(values))), self.low + 1)
        self.begin, self.end = begin, end

    def place(self, value: float) -> float:
        part = (math.log10(value) - self.low) / (self.high - self.low)
        return self.begin + part * (self.end - self.begin)

    def ticks(self) -> list[float]:
        return [10.0 ** power for power in range(self.low, self.high + 1)]


@dataclass
class Plot:
    title: str
    axis: str
    lines: list[tuple[str, list[tuple[float, float]]]] = field(default_factory=list)

    def add(self, name: str, points: list[tuple[float, float]]) -> None:
        self.lines.append((name, points))

    def svg(self) -> str:
        points = [point for _, line in self.lines for point in line]
        x = Axis([point[0] for point in points], LEFT, WIDTH - RIGHT)
        y = Axis([point[1] for point in points], HEIGHT - BOTTOM, TOP)
        parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
                 f'viewBox="0 0 {WIDTH} {HEIGHT}" font-family="sans-serif" font-size="12">',
                 f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
                 f'<text x="{LEFT}" y="22" font-size="15">{escape(self.title)}</text>',
                 f'<text x="{(LEFT + WIDTH - RIGHT) / 2}" y="{HEIGHT - 12}" '
                 f'text-anchor="middle">{escape(self.axis)}</text>']
        for tick in x.ticks():
            at = x.place(tick)
            parts += [f'<path d="M{at:.1f} {TOP}V{HEIGHT - BOTTOM}" stroke="#ddd"/>',
                      f'<text x="{at:.1f}" y="{HEIGHT - BOTTOM + 18}" '
                      f'text-anchor="middle">{number(tick)}</text>']
        for tick in y.ticks():
            at = y.place(tick)
            parts += [f'<path d="M{LEFT} {at:.1f}H{WIDTH - RIGHT}" stroke="#ddd"/>',
                      f'<text x="{LEFT - 8}" y="{at + 4:.1f}" text-anchor="end">{time(tick)}</text>']
        for index, (name, line) in enumerate(self.lines):
            places = [(x.place(size), y.place(value)) for size, value in line]
            way = "L".join(f"{across:.1f} {down:.1f}" for across, down in places)
            colour = COLOURS[index]
            parts.append(f'<path d="M{way}" fill="none" stroke="{colour}" stroke-width="2" '
                         f'stroke-dasharray="{DASHES[index]}"/>')
            parts += [f'<circle cx="{across:.1f}" cy="{down:.1f}" r="3" fill="{colour}"/>'
                      for across, down in places]
            # A fixed place each, as lines that reach their floor lie on each other.
            across, down = WIDTH - RIGHT + 10, TOP + 14 + 20 * index
            parts += [f'<path d="M{across} {down - 4}h18" stroke="{colour}" stroke-width="2" '
                      f'stroke-dasharray="{DASHES[index]}"/>',
                      f'<text x="{across + 22}" y="{down}">{escape(name)}</text>']
        return "\n".join([*parts, "</svg>"]) + "\n"
