"""Measures everything and prints one table.

    table.py [--quick] [--minutes N] [--only PART...] BUILD
"""

import argparse
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "tests"))

import measure  # noqa: E402


class Table:
    """Lines with a figure each, and what it is compared with."""

    def __init__(self):
        self._lines = []

    def add(self, figure, own, other, reached, target="", is_met=None):
        met = {True: "yes", False: "no", None: ""}[is_met]
        self._lines.append((figure, own, other, reached, target, met))

    def add_ratio(self, figure, own, other, most, unit):
        """Compares a figure with the same one of something else."""
        ratio = own / other
        self.add(figure, f"{own:.4g} {unit}", f"{other:.4g} {unit}", f"{ratio:.2f} x",
                 f"<= {most} x", round(ratio, 2) <= most)

    def add_limit(self, figure, own, most, unit):
        """Compares a figure with a fixed limit."""
        self.add(figure, f"{own:.4g} {unit}", "", f"{own:.4g} {unit}", f"<= {most} {unit}",
                 own <= most)

    def __str__(self):
        heads = ("Figure", "guide", "beside it", "reached", "target", "met")
        rows = [heads, tuple("---" for _ in heads), *self._lines]
        widths = [max(len(row[i]) for row in rows) for i in range(len(heads))]
        return "\n".join(
            "| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |"
            for row in rows)


def add_start(table, bench):
    start = measure.measure_start(bench)
    guide = start["guide"]
    for name, most in (("EFL", 0.9), ("GTK", 0.6), ("Qt", 0.8)):
        table.add_ratio(f"start to first frame, {name}", guide["frame"], start[name]["frame"],
                        most, "ms")
    first = start["EFL first"]["frame"]
    table.add("the same, EFL as a session's first program", f"{guide['frame']:.4g} ms",
              f"{first:.4g} ms", f"{guide['frame'] / first:.2f} x")
    for name in ("EFL", "GTK", "Qt"):
        table.add(f"processor time of it, {name}", f"{guide['cpu']:.4g} ms",
                  f"{start[name]['cpu']:.4g} ms", f"{guide['cpu'] / start[name]['cpu']:.2f} x")
    table.add_ratio("peak memory, EFL", guide["peak"], start["EFL"]["peak"], 1.0, "KiB")
    for name in ("GTK", "Qt"):
        table.add(f"peak memory, {name}", f"{guide['peak']:.0f} KiB",
                  f"{start[name]['peak']:.0f} KiB",
                  f"{guide['peak'] / start[name]['peak']:.2f} x")
    for what, part in (("share of memory", "share"), ("private memory", "private"),
                       ("anonymous memory", "anonymous")):
        table.add_ratio(f"{what}, EFL", guide[part], start["EFL"][part], 1.0, "KiB")
        for name in ("GTK", "Qt"):
            table.add(f"{what}, {name}", f"{guide[part]:.0f} KiB", f"{start[name][part]:.0f} KiB",
                      f"{guide[part] / start[name][part]:.2f} x")


def add_other_starts(table, bench):
    cold = measure.measure_cold_start(bench)
    for name in ("EFL", "GTK", "Qt") if cold else ():
        table.add(f"cold start, {name}", f"{cold['guide']:.0f} ms", f"{cold[name]:.0f} ms",
                  f"{cold['guide'] / cold[name]:.2f} x")
    table.add_limit("qivo-watch launch to the page seen", measure.measure_launch(bench), 150, "ms")


def add_energy(table, bench):
    energy = measure.measure_energy(bench)
    for interval, speed in ((800, "a slow detent"), (33, "a detent of 30 a second")):
        guide = energy[interval, "guide"]
        for name, most in (("EFL", 0.6), ("EFL, same motion", None), ("GTK", None), ("Qt", 1.0)):
            other = energy[interval, name]
            figure = f"processor time of {speed}, {name}"
            if most:
                table.add_ratio(figure, guide["own"], other["own"], most, "ms")
            else:
                table.add(figure, f"{guide['own']:.4g} ms", f"{other['own']:.4g} ms",
                          f"{guide['own'] / other['own']:.2f} x")
            table.add("the same of the X server", f"{guide['server']:.4g} ms",
                      f"{other['server']:.4g} ms", f"{guide['server'] / other['server']:.2f} x")
            frame, others = guide["own"] / guide["frames"], other["own"] / other["frames"]
            table.add("the same a frame", f"{frame:.3g} ms, {guide['frames']:.1f} frames",
                      f"{others:.3g} ms, {other['frames']:.1f} frames", f"{frame / others:.2f} x")


def add_standing(table, bench):
    share = measure.measure_share(bench)
    for what, figure, most in (("in qivo-ui/", "own", 1), ("for screen readers", "readers", 0.01),
                               ("to follow the user's look", "look", 1)):
        table.add_limit(f"instructions to first frame {what}",
                        share[figure] / share["all"] * 100, most, "%")
    detents = measure.measure_detents(bench)
    table.add(f"{detents['count']} detents to a changed frame", f"{detents['median']:.1f} ms", "",
              f"99 of 100 in {detents['p99']:.1f} ms, {detents['dropped']} dropped",
              "next frame, 0 dropped", detents["dropped"] == 0 and detents["p99"] <= 33.4)
    table.add("processor time of a language change",
              f"{measure.measure_language_change(bench):.3g} ms", "", "")
    # The toolkit's slowest clock ticks once in 64 seconds.
    seconds = bench.standing_s or (3 if bench.is_quick else 66)
    for state, make in (("standing still", None), ("standing still, charging", bench.plug_charger)):
        if make:
            make()
        wake_ups, cpu = measure.measure_standing(bench, seconds)
        table.add_limit(f"wake-ups in {seconds} seconds {state}", wake_ups, 0, "wake-ups")
        table.add_limit("processor time of it", cpu, 0, "ms")


def add_operations(table, bench):
    times = measure.measure_operations(bench)
    table.add_ratio("1,000 screens pushed and popped", times["push_pop"] * 1e-5,
                    times["push_pop/bare"] * 1e-5, 1.05, "ms")
    add_kept(table, times["push_pop/kept"], times["push_pop/bare/kept"])
    table.add_limit("detent over the bare callback", times["detent"] - times["detent/bare"], 50,
                    "ns")
    table.add_limit("log line dropped", times["log_line"], 50, "ns")
    table.add_limit("log line written", times["log_line/written"], 2000, "ns")
    table.add_limit("code and data of qivo-ui/", measure.measure_size(bench) / 1024, 120, "KiB")


def add_kept(table, own, bare):
    """The smallest allocation is 32 bytes, so less than half of that counts as nothing."""
    table.add("memory kept by each of them", f"{own:.0f} bytes", f"{bare:.0f} bytes",
              f"{own - bare:.0f} bytes", "none", own - bare < 16)


PARTS = {"start": add_start, "other-starts": add_other_starts, "energy": add_energy,
         "standing": add_standing, "operations": add_operations}
"""In this order: standing still plugs the charger in."""


def main():
    parser = argparse.ArgumentParser(prog="script/bench")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--minutes", type=int, default=0)
    parser.add_argument("--only", action="append", choices=PARTS)
    parser.add_argument("build")
    arguments = parser.parse_args()
    table = Table()
    with measure.Bench(arguments.build, arguments.quick, arguments.minutes * 60) as bench:
        for part, add in PARTS.items():
            if part in (arguments.only or PARTS):
                add(table, bench)
    load = pathlib.Path("/proc/loadavg").read_text().split()[1]
    print(f"{time.strftime('%Y-%m-%d %H:%M')}, load of the last five minutes {load}\n\n{table}")


if __name__ == "__main__":
    main()
