#!/usr/bin/python3
"""Run the benchmarks and compare the library with its peers.

    report.py BUILD_FOLDER [--repetitions N] [--only REGEX] [--time real|cpu]

Every group of cases runs in a process of its own, its repetitions interleaved at random. The figures are
medians of ratios: repetition by repetition, the library's time against the peer's in the same run, so that a
machine that is busy for a while slows both. The first repetition warms memory and caches up and is left out.
Where other work runs all the time, --time cpu leaves the waiting for a processor out, but that for a disk too.

Series show how a cost grows: with the number of parameters, where the exponent of the best power law through the
medians counts, and with the depth of a tree, where the medians are set against the first of them.

Exit code: 0 if everything ran, 1 if a case failed (for instance because what it read was not what it wrote),
2 for wrong arguments. A figure that falls short does not fail the run.
"""

import argparse
import collections
import json
import math
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile

# AT_MOST: our time is at most so many times the peer's. FASTER: our speed is at least so many times the peer's.
AT_MOST = "time at most"
FASTER = "speed at least"

Target = collections.namedtuple("Target", "group peer kind bound")

BLOCK = [
    Target("block_write/{medium}", "plain", AT_MOST, 1.3),
    Target("block_write/{medium}", "cereal", FASTER, None),
    Target("block_write/{medium}", "boost", FASTER, None),
    Target("block_write/{medium}", "memcpy", AT_MOST, None),
    Target("block_read/{medium}", "plain", AT_MOST, 1.2),
    Target("block_read/{medium}", "cereal", FASTER, 2.0),
    Target("block_read/{medium}", "boost", FASTER, None),
    Target("block_read/{medium}", "memcpy", AT_MOST, None),
]
SYNCHRONISED_BLOCK = [
    Target("block_write/disk_sync", "plain", AT_MOST, 1.3),
    Target("block_write/disk_sync", "cereal", FASTER, None),
]
SUBJECTS = [
    Target("kernel_write/{medium}", "boost", FASTER, 2.0),
    Target("kernel_write/{medium}", "cereal", FASTER, 1.0),
    Target("kernel_read/{medium}", "boost", FASTER, 2.0),
    Target("kernel_read/{medium}", "cereal", FASTER, 1.0),
    Target("ranges_write/{medium}", "boost", FASTER, 3.5),
    Target("ranges_write/{medium}", "cereal", FASTER, 2.0),
    Target("ranges_read/{medium}", "boost", FASTER, 2.5),
    Target("ranges_read/{medium}", "cereal", FASTER, 1.3),
    Target("xml_kernel_write/{medium}", "boost", FASTER, 4.0),
    Target("xml_kernel_write/{medium}", "cereal", FASTER, 6.0),
    Target("xml_kernel_read/{medium}", "boost", FASTER, 2.0),
    Target("xml_kernel_read/{medium}", "cereal", FASTER, 1.2),
    Target("xml_ranges_write/{medium}", "boost", FASTER, 4.0),
    Target("xml_ranges_write/{medium}", "cereal", FASTER, 6.0),
    Target("xml_ranges_read/{medium}", "boost", FASTER, 2.0),
    Target("xml_ranges_read/{medium}", "cereal", FASTER, 1.2),
]
# How many times as fast as the standard library, per size of the elements.
MIRROR_16K = {1: 16.0, 2: 6.5, 4: 10.0, 8: 2.6}
MIRROR_64M = {1: 5.0, 2: 2.5, 4: 2.5, 8: 1.15}
FILL_16K = {2: 12.0, 4: 6.5, 8: 3.3}
FILL_64M = {2: 4.0, 4: 2.1, 8: 1.15}
AS_FAST = 1.05  # "as fast as", with room for what two runs of one and the same function differ by
MEMORY = (
    [Target("mirror_%d/16KiB" % n, "reverse_copy", FASTER, bound) for n, bound in MIRROR_16K.items()]
    + [Target("mirror_%d/64MiB" % n, "reverse_copy", FASTER, bound) for n, bound in MIRROR_64M.items()]
    + [Target("mirror_%d/%s" % (n, size), "memcpy", AT_MOST, None)
       for size in ("16KiB", "64MiB") for n in (1, 2, 4, 8)]
    + [Target("fill_%d/16KiB" % n, "std_fill", FASTER, bound) for n, bound in FILL_16K.items()]
    + [Target("fill_%d/64MiB" % n, "std_fill", FASTER, bound) for n, bound in FILL_64M.items()]
    + [Target("fill_1/%s" % size, "memset", AT_MOST, AS_FAST) for size in ("16KiB", "64MiB")]
    + [Target("fill_%d/%s" % (n, size), "memset", AT_MOST, None)
       for size in ("16KiB", "64MiB") for n in (2, 4, 8)]
    + [Target("copy/%s" % size, "memcpy", AT_MOST, AS_FAST) for size in ("16KiB", "64MiB")])
BUFFERS = [
    Target("buffer_write/tmpfs", "plain", AT_MOST, None),
    Target("buffer_read/tmpfs", "plain", AT_MOST, None),
    Target("xml_buffer_write/tmpfs", "plain", AT_MOST, None),
    Target("xml_buffer_read/tmpfs", "plain", AT_MOST, None),
]
FRAME = [
    Target("create_shared", "make_shared", AT_MOST, None),
    Target("create_shared", "table", AT_MOST, None),
    Target("create_new", "new", AT_MOST, None),
    Target("create_new", "table", AT_MOST, None),
    Target("type_name", "boost_mutex", AT_MOST, None),
    Target("version", "boost_mutex", AT_MOST, None),
]

ITEMS = [
    Target("items_write/memory", "boost", FASTER, 4.0),
    Target("items_write/memory", "cereal", FASTER, 2.5),
    Target("items_read/memory", "boost", FASTER, 2.5),
    Target("items_read/memory", "cereal", FASTER, 1.5),
    Target("items_xml_write/memory", "boost", FASTER, 4.0),
    Target("items_xml_write/memory", "cereal", FASTER, 6.0),
    Target("items_xml_read/memory", "boost", FASTER, 2.0),
    Target("items_xml_read/memory", "cereal", FASTER, 1.2),
    Target("items_equal", "walk", AT_MOST, 2.0),
    Target("items_build", "cereal", AT_MOST, None),
    Target("items_build", "boost", AT_MOST, None),
    Target("items_copy", "cereal", AT_MOST, None),
    Target("items_copy", "boost", AT_MOST, None),
]
NEIGHBOURHOODS = (
    [Target("disc/%d" % radius, "naive", FASTER, 2.6 if radius == 50 else None) for radius in (1, 3, 10, 30, 50, 100)]
    + [Target("disc/50", "opencv", FASTER, None)]
    + [Target("ball/%d" % radius, "naive", FASTER, 5.0 if radius == 50 else None) for radius in (1, 3, 10, 30, 50, 100)]
    + [Target("ball/50", "itk", FASTER, 3.0),
       Target("box/31x31x31", "naive", FASTER, 3.0),
       Target("segment/1000", "naive", FASTER, None),
       Target("dense_kernel/1M", "naive", FASTER, 3.0),
       Target("rotate/101x101", "making", AT_MOST, None),
       Target("description_copy/ball_20", "set", AT_MOST, None)])
PLANS = [
    Target("plans_assign", "tuple_map", AT_MOST, None),
    Target("plans_find", "tuple_map", AT_MOST, None),
    Target("plans_walk", "tuple_map", AT_MOST, None),
]
# The sides of a series are the numbers that the cost depends on. A bound is that of the exponent.
Series = collections.namedtuple("Series", "group bound")
ITEM_COSTS = ("build", "copy", "equal", "write", "read", "xml_write", "xml_read")
SERIES = ([Series("items_%s/parameters" % cost, 1.1) for cost in ITEM_COSTS]
          + [Series("items_%s/depth" % cost, None) for cost in ITEM_COSTS])


def all_targets():
    """The targets with the media filled in."""
    result = [t._replace(group=t.group.format(medium=m)) for m in ("tmpfs", "disk") for t in BLOCK]
    result += SYNCHRONISED_BLOCK
    for medium in ("memory", "tmpfs", "disk"):
        result += [t._replace(group=t.group.format(medium=medium)) for t in SUBJECTS]
    return result + MEMORY + BUFFERS + FRAME + ITEMS + NEIGHBOURHOODS + PLANS


def split_name(name):
    """'group/side/real_time' as (group, side)."""
    parts = name.split("/")
    return "/".join(parts[:-2]), parts[-2]


def list_groups(program, environment):
    output = subprocess.run([program, "--benchmark_list_tests=true"], env=environment, check=True,
                            stdout=subprocess.PIPE, universal_newlines=True).stdout
    groups = []
    for line in output.splitlines():
        group = split_name(line.strip())[0]
        if group not in groups:
            groups.append(group)
    return groups


def run_group(program, group, repetitions, environment, clock):
    """Times in nanoseconds per side, one per repetition, and the messages of cases that failed."""
    with tempfile.NamedTemporaryFile(suffix=".json") as report:
        subprocess.run(
            [program,
             "--benchmark_filter=^" + re.escape(group) + "/[^/]+/real_time$",
             "--benchmark_enable_random_interleaving=true",
             "--benchmark_repetitions=%d" % (repetitions + 1),
             "--benchmark_min_time=0.05",
             "--benchmark_out=" + report.name,
             "--benchmark_out_format=json"],
            env=environment, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        rows = json.load(report)["benchmarks"]

    scale = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
    times = collections.defaultdict(dict)
    failures = []
    for row in rows:
        if row.get("run_type") != "iteration":
            continue
        side = split_name(row["run_name"])[1]
        if row.get("error_occurred"):
            failures.append("%s/%s: %s" % (group, side, row.get("error_message")))
        elif row["repetition_index"] > 0:
            times[side][row["repetition_index"]] = row[clock + "_time"] * scale[row["time_unit"]]
    return times, failures


def readable_time(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return "%.1f %s" % (nanoseconds / size, unit)
    return "%.1f ns" % nanoseconds


def ratios(target, ours, peers):
    """One ratio per repetition that both sides have."""
    both = sorted(set(ours) & set(peers))
    if target.kind == AT_MOST:
        return [ours[i] / peers[i] for i in both]
    return [peers[i] / ours[i] for i in both]


def verdict(target, median):
    if target.bound is None:
        return ""
    reached = median <= target.bound if target.kind == AT_MOST else median >= target.bound
    return "reached" if reached else "SHORT"


def print_comparison(measured):
    line = "%-24s %-12s %10s %10s  %-14s %6s  %6s  %-13s %s"
    print(line % ("group", "against", "ours", "theirs", "", "target", "median", "quartiles", ""))
    reached = short = missing = 0
    for target in all_targets():
        if target.group not in measured:
            continue
        times = measured[target.group]
        found = ratios(target, times.get("orvel", {}), times.get(target.peer, {}))
        if not found:
            missing += target.bound is not None
            print(line % (target.group, target.peer, "-", "-", target.kind,
                          "-" if target.bound is None else "%g" % target.bound, "-", "-", "not measured"))
            continue
        median = statistics.median(found)
        quartiles = statistics.quantiles(found, n=4) if len(found) > 1 else [median] * 3
        result = verdict(target, median)
        reached += result == "reached"
        short += result == "SHORT"
        print(line % (target.group, target.peer,
                      readable_time(statistics.median(times["orvel"].values())),
                      readable_time(statistics.median(times[target.peer].values())),
                      target.kind, "-" if target.bound is None else "%g" % target.bound,
                      "%.2f" % median, "%.2f .. %.2f" % (quartiles[0], quartiles[2]), result))
    for series in SERIES:
        if series.group in measured:
            result = print_series(series, measured[series.group])
            reached += result == "reached"
            short += result == "SHORT"
            missing += result == "not measured"
    print("\n%d targets reached, %d short, %d not measured" % (reached, short, missing))


def fitted_exponent(medians):
    """The slope of the straight line through the logarithms: least squares."""
    points = [(math.log(number), math.log(median)) for number, median in medians.items()]
    mean_x = statistics.mean(x for x, _ in points)
    mean_y = statistics.mean(y for _, y in points)
    return (sum((x - mean_x) * (y - mean_y) for x, y in points)
            / sum((x - mean_x) ** 2 for x, _ in points))


def print_series(series, times):
    medians = {int(number): statistics.median(found.values()) for number, found in times.items() if found}
    numbers = sorted(medians)
    if len(numbers) < 3:
        print("%-24s not measured" % series.group)
        return "" if series.bound is None else "not measured"
    costs = ", ".join("%d: %s" % (number, readable_time(medians[number])) for number in numbers)
    if series.bound is None:
        against = " .. ".join("%.2f" % (medians[number] / medians[numbers[0]]) for number in numbers)
        print("%-24s %s; against the first: %s" % (series.group, costs, against))
        return ""
    exponent = fitted_exponent(medians)
    result = "reached" if exponent <= series.bound else "SHORT"
    print("%-24s %s; exponent %.3f, at most %g: %s" % (series.group, costs, exponent, series.bound, result))
    return result


def main():
    parser = argparse.ArgumentParser(description="Run the benchmarks and compare the library with its peers.")
    parser.add_argument("build_folder", type=pathlib.Path)
    parser.add_argument("--repetitions", type=int, default=9)
    parser.add_argument("--only", default="", help="regular expression that the groups to run contain")
    parser.add_argument("--time", choices=("real", "cpu"), default="real", help="clock to compare by")
    arguments = parser.parse_args()
    if arguments.repetitions < 1:
        parser.error("at least one repetition is needed")

    program = arguments.build_folder.resolve() / "benchmarks" / "ORVELBenchmarks"
    if not program.exists():
        parser.error("no %s; configure with -DORVEL_BUILD_BENCHMARKS=ON and build" % program)
    environment = dict(os.environ)
    environment.setdefault("ORVEL_BENCHMARK_DISK", str(program.parent))

    measured = {}
    failures = []
    for group in list_groups(str(program), environment):
        if not re.search(arguments.only, group):
            continue
        print("running %s ..." % group, file=sys.stderr, flush=True)
        measured[group], failed = run_group(str(program), group, arguments.repetitions, environment,
                                            arguments.time)
        failures += failed

    print_comparison(measured)
    for failure in sorted(set(failures)):
        print("FAILED " + failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
