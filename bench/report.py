#!/usr/bin/env python3
"""Runs the benchmark programs named and prints, job by job, what each peer took.

A benchmark is called Job/peer/size. The time is the median over the repetitions, in nanoseconds per
item where the benchmark counts items, and per call elsewhere; a benchmark that sets the counter
"bytes" is reported by that instead. The ratio is tq's figure divided by the peer's: below 1, tq needs
less.

  report.py [--json] [--benchmark_OPTION=...] PROGRAM...

--json keeps the results as results.json and RESULTS.md beside this file. Options of Google Benchmark
go to the programs, as --benchmark_filter=REGEX.
"""

import json
import pathlib
import subprocess
import sys
import tempfile

RUN = [
    "--benchmark_enable_random_interleaving=true",
    "--benchmark_repetitions=9",
    "--benchmark_min_time=0.1",
    "--benchmark_report_aggregates_only=true",
    "--benchmark_out_format=json",
]


def measure(program, options):
    """The context and the medians of one program."""
    print(f"measuring {program.stem}", file=sys.stderr, flush=True)
    with tempfile.NamedTemporaryFile(suffix=".json") as out:
        command = [str(program), *RUN, *options, f"--benchmark_out={out.name}"]
        run = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        if run.returncode != 0:
            sys.exit(f"{program}: {run.stderr}")
        text = out.read()
    if not text:  # the filter left nothing of this program
        return {}, []
    results = json.loads(text)
    failed = [run for run in results["benchmarks"] if run.get("error_occurred")]
    for run in failed:
        print(f"{run['name']}: {run['error_message']}", file=sys.stderr)
    if failed:
        sys.exit(1)
    return results["context"], [
        {"program": program.stem, **figure(run)}
        for run in results["benchmarks"]
        if run.get("aggregate_name") == "median"
    ]


def figure(run):
    job, peer, *size = run["run_name"].split("/")
    result = {"job": job, "size": "/".join(size), "peer": peer}
    if "bytes" in run:
        return {**result, "unit": "bytes", "median": run["bytes"]}
    if "items_per_second" in run:
        return {**result, "unit": "ns", "median": 1e9 / run["items_per_second"]}
    nanoseconds = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
    return {**result, "unit": "ns", "median": run["real_time"] * nanoseconds}


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


def keep(context, figures):
    folder = pathlib.Path(__file__).parent
    facts = machine(context)
    kept = {"machine": facts, "results": figures}
    (folder / "results.json").write_text(json.dumps(kept, indent=1) + "\n")
    lines = ["# Results", "", "Written by `./dev bench --json`; the ratio is tq's figure divided by"]
    lines += ["the peer's. Medians per item, all peers in one run.", ""]
    lines += [f"- {name.removeprefix('version of ')}: {value}" for name, value in facts.items()]
    lines += ["", "| job | size | peer | median | ratio |", "|---|---|---|---:|---:|"]
    lines += ["| " + " | ".join(row) + " |" for row in by_job(figures)]
    (folder / "RESULTS.md").write_text("\n".join(lines) + "\n")


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
    widths = "{:28} {:>12}  {:24} {:>16} {:>7}"
    print(widths.format("job", "size", "peer", "median", "ratio"))
    for row in by_job(figures):
        print(widths.format(*row))
    if "--json" in arguments:
        keep(context, figures)


main(sys.argv[1:])
