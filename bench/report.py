#!/usr/bin/env python3
"""Runs the benchmark programs named and prints, job by job, what each peer took.

A benchmark is called Job/peer/size. Each job and size runs in a process of its own, so that one does
not find the memory as another left it; there, the peers take turns. The time is the median over the
repetitions, in nanoseconds of processor time per item where the benchmark counts items, and per call
elsewhere; a benchmark that sets the counter "bytes" is reported by that instead. The ratio is tq's
figure divided by the peer's: below 1, tq needs less.

targets.csv names what tq is to reach: the most that the ratio to the best of some peers (patterns,
separated by |) may be, or a time or size for tq itself. A target stays open when none of its peers
was measured: not installed (the configuration of the build says so), or not chosen.

  report.py [--json] [--benchmark_OPTION=...] PROGRAM...

--json keeps the results as results.json and RESULTS.md beside this file. Options of Google Benchmark
go to the programs, as --benchmark_filter=REGEX.
"""

import csv
import fnmatch
import json
import pathlib
import re
import subprocess
import sys
import tempfile

RUN = [
    "--benchmark_enable_random_interleaving=true",
    "--benchmark_repetitions=15",
    "--benchmark_min_time=0.06",
    "--benchmark_report_aggregates_only=true",
    "--benchmark_out_format=json",
]


FIGURES = ["job", "size", "peer", "median", "ratio"]
TARGETS = ["job", "size", "best peer", "target", "reached", ""]

FOLDER = pathlib.Path(__file__).parent


def run(command):
    ran = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    if ran.returncode != 0:
        sys.exit(f"{command[0]}: {ran.stderr}")
    return ran.stdout


def measure(program, options):
    """The context and the medians of one program."""
    print(f"measuring {program.stem}", file=sys.stderr, flush=True)
    groups = {}
    for name in run([str(program), "--benchmark_list_tests", *options]).splitlines():
        job, peer, *size = name.split("/")
        groups.setdefault((job, *size), []).append(name)
    context, figures = {}, []
    for names in groups.values():
        wanted = "^(" + "|".join(re.escape(name).replace(r"\ ", " ") for name in names) + ")$"
        described, measured = measure_group(program, options, wanted)
        context.update(described)
        figures += measured
    return context, figures


def measure_group(program, options, wanted):
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        options = [*RUN, *options, f"--benchmark_out={out.name}", f"--benchmark_filter={wanted}"]
        run([str(program), *options])
        results = json.loads(out.read())
    failed = [one for one in results["benchmarks"] if one.get("error_occurred")]
    for one in failed:
        print(f"{one['name']}: {one['error_message']}", file=sys.stderr)
    if failed:
        sys.exit(1)
    once = [one for one in results["benchmarks"] if one.get("repetitions") == 1]
    medians = [one for one in results["benchmarks"] if one.get("aggregate_name") == "median"]
    return results["context"], [
        {"program": program.stem, **figure(one)} for one in medians + once
    ]


def figure(run):
    # Behind them stand the benchmark's own settings, as in "iterations:1".
    words = [word for word in run["run_name"].split("/") if not re.fullmatch(r"\w+:[\d.]+", word)]
    job, peer, *size = words
    result = {"job": job, "size": "/".join(size), "peer": peer}
    if "bytes" in run:
        return {**result, "unit": "bytes", "median": run["bytes"]}
    if "items_per_second" in run:
        return {**result, "unit": "ns", "median": 1e9 / run["items_per_second"]}
    nanoseconds = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
    return {**result, "unit": "ns", "median": run["cpu_time"] * nanoseconds}


def by_job(figures):
    """The rows of the report: jobs in the order of their programs, sizes rising, best peer first."""
    order = list(dict.fromkeys(one["program"] for one in figures))
    jobs = {}
    for one in figures:
        numbers = [int(word) if word.isdigit() else 0 for word in one["size"].split("/")]
        key = order.index(one["program"]), one["job"], numbers, one["size"]
        jobs.setdefault(json.dumps(key), (key, []))[1].append(one)
    for (_, job, _, size), peers in sorted(jobs.values(), key=lambda entry: entry[0]):
        own = next((one["median"] for one in peers if one["peer"] == "tq"), None)
        for one in sorted(peers, key=lambda one: one["median"]):
            known = own is not None and one["peer"] != "tq" and one["median"] > 0
            ratio = f"{own / one['median']:.2f}" if known else ""
            yield job, size, one["peer"], f"{one['median']:,.1f} {one['unit']}", ratio


def by_target(figures):
    """The rows of the targets: what was to be reached by this run's jobs, and what was."""
    jobs = {}
    for one in figures:
        jobs.setdefault((one["job"], one["size"]), {})[one["peer"]] = one["median"]
    with open(FOLDER / "targets.csv", newline="") as lines:
        for line in csv.DictReader(lines):
            peers = jobs.get((line["job"], line["size"]), {})
            if "tq" not in peers:
                continue
            if not line["of"]:
                limit, unit = line["target"].split()
                reached = peers["tq"] / {"ms": 1e6, "ns": 1, "bytes": 1}[unit]
                best, text = "", f"{reached:.2f} {unit}"
            else:
                known = {
                    median: peer
                    for peer, median in peers.items()
                    if peer != "tq" and any(fnmatch.fnmatch(peer, of) for of in line["of"].split("|"))
                }
                if not known:
                    yield line["job"], line["size"], "none measured", line["target"], "", "open"
                    continue
                best, limit = known[min(known)], line["target"]
                reached = peers["tq"] / min(known)
                text = f"{reached:.2f}"
            met = "" if reached <= float(limit) else "missed"
            yield line["job"], line["size"], best, line["target"], text, met


def machine(context):
    """What the figures depend on; never the name of the machine or paths on it."""
    model = "unknown processor"
    cpuinfo = pathlib.Path("/proc/cpuinfo")
    if cpuinfo.exists():
        names = [line for line in cpuinfo.read_text().splitlines() if line.startswith("model name")]
        model = names[0].split(":", 1)[1].strip() if names else model
    facts = {"processor": f"{model}, {context['num_cpus']} cores", "date": context["date"][:10]}
    facts.update((key, value) for key, value in context.items() if key.startswith("version of "))
    return facts


def table(titles, alignment, rows):
    return [f"| {' | '.join(row)} |" for row in [titles, alignment, *rows]]


def keep(context, figures):
    facts = machine(context)
    kept = {"machine": facts, "results": figures}
    (FOLDER / "results.json").write_text(json.dumps(kept, indent=1) + "\n")
    lines = ["# Results", "", "Written by `./dev bench --json`; the ratio is tq's figure divided by"]
    lines += ["the peer's. Medians per item, all peers of a job in one process.", ""]
    lines += [f"- {name.removeprefix('version of ')}: {value}" for name, value in facts.items()]
    lines += ["", "## Targets", "", "To the best of the peers that count for the job.", ""]
    lines += table(TARGETS, ["---", "---:", "---", "---:", "---:", "---"], by_target(figures))
    lines += ["", "## All figures", ""]
    lines += table(FIGURES, ["---", "---:", "---", "---:", "---:"], by_job(figures))
    (FOLDER / "RESULTS.md").write_text("\n".join(lines) + "\n")


def print_rows(widths, rows):
    for row in rows:
        print(widths.format(*row).rstrip())


def main(arguments):
    options = [one for one in arguments if one.startswith("--benchmark_")]
    programs = [pathlib.Path(one) for one in arguments if not one.startswith("--")]
    unknown = [one for one in arguments if one.startswith("--") and one not in [*options, "--json"]]
    if unknown or not programs:
        sys.exit(__doc__)
    context, figures = {}, []
    for program in programs:
        described, measured = measure(program.resolve(), options)
        context.update(described)
        figures += measured
    print_rows("{:28} {:>12}  {:24} {:>16} {:>7}", [FIGURES, *by_job(figures)])
    print()
    print_rows("{:28} {:>12}  {:24} {:>9} {:>9} {}", [TARGETS, *by_target(figures)])
    if "--json" in arguments:
        keep(context, figures)


main(sys.argv[1:])
