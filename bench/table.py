#!/usr/bin/env python3
"""The README's performance table, from the JSON that scripts/bench's repeated runs leave.

Each row of bench/table.tsv names a measured value and its baseline in the same run; a figure is the median
of the ratios of the repetitions, paired by repetition, with their spread (lowest to highest). Without
results it only checks that the README's table holds every row of table.tsv and that every benchmark the
rows name exists: the suite runs it that way.
"""
import argparse
import csv
import glob
import json
import os
import re
import statistics
import sys

BEGIN = "<!-- bench table: written by scripts/bench -->"
END = "<!-- end of bench table -->"
SUFFIX = re.compile(r"^(real_time|manual_time|process_time|iterations:\d+|repeats:\d+|min_time:[\d.]+s?)$")
UNITS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def read_rows(path):
    with open(path, newline="", encoding="utf-8") as f:
        rows = [r for r in csv.DictReader(f, delimiter="\t") if r["what"].strip() and not r["what"].startswith("#")]
    for r in rows:
        for key in ("what", "baseline", "value", "base", "show"):
            if not (r.get(key) or "").strip():
                sys.exit(f"table.tsv: row '{r.get('what')}' has no '{key}'")
    return rows


def split_measure(measure):
    # binary:run name[:field]; the field is real_time (default), cpu_time or a counter's name.
    parts = measure.split(":")
    binary, rest = parts[0], ":".join(parts[1:])
    field = "real_time"
    m = re.match(r"^(.*)@(\w+)$", rest)
    if m:
        rest, field = m.group(1), m.group(2)
    return binary, rest, field


def matches(run_name, name):
    if run_name == name:
        return True
    if not run_name.startswith(name + "/"):
        return False
    return all(SUFFIX.match(p) for p in run_name[len(name) + 1:].split("/"))


def load_results(folder):
    results = {}
    for path in glob.glob(os.path.join(folder, "*.json")):
        binary = os.path.splitext(os.path.basename(path))[0]
        with open(path, encoding="utf-8") as f:
            data = json.load(f)
        results[binary] = [b for b in data.get("benchmarks", []) if b.get("run_type") == "iteration"]
    return results


def values(results, measure):
    """The value of each repetition, in ms for times."""
    binary, name, field = split_measure(measure)
    runs = [b for b in results.get(binary, []) if matches(b.get("run_name", b["name"]), name)]
    if not runs:
        raise KeyError(f"no results for {measure}")
    out = []
    for b in sorted(runs, key=lambda b: b.get("repetition_index", 0)):
        if field in ("real_time", "cpu_time"):
            out.append(b[field] * UNITS[b.get("time_unit", "ns")])
        else:
            out.append(float(b[field]))
    return out


def amount(ms):
    if ms >= 1000:
        return f"{ms / 1000:.2f} s"
    if ms >= 1:
        return f"{ms:.3g} ms"
    return f"{ms * 1000:.3g} µs"


def spread(vs, fmt):
    lo, hi = min(vs), max(vs)
    return f"{fmt(statistics.median(vs))} ({fmt(lo)}–{fmt(hi)})" if len(vs) > 1 else fmt(vs[0])


def figure(results, row):
    vals = values(results, row["value"])
    show = row["show"].strip()
    if row["base"].strip() == "-":
        ratios = vals
    else:
        base = values(results, row["base"])
        n = min(len(vals), len(base))
        ratios = [vals[i] / base[i] for i in range(n) if base[i] > 0]
    if show == "ratio":
        return spread(ratios, lambda r: f"{r:.2f}×") + f", {amount(statistics.median(values_for_amount(results, row)))}"
    if show == "ms":
        return spread(vals, amount)
    m = re.match(r"^counter(?::(.*))?$", show)
    if m:
        unit = m.group(1) or ""
        sep = "" if unit in ("", "×") else " "
        return spread(vals, lambda v: f"{v:.3g}{sep}{unit}")
    sys.exit(f"table.tsv: unknown show '{show}'")


def values_for_amount(results, row):
    measure = row.get("amount", "").strip() or row["value"]
    return values(results, measure)


# The figure: start, memory and typing cost against document count and file size.
PLOT = [
    ("Start restoring a session (ms)", "documents", [
        ("all back", "bench_startup:BM_StartRestoringSession_AllBack/{x}", [1, 20, 200]),
        ("frame answers", "bench_startup:BM_StartRestoringSession_FrameAnswers/{x}", [1, 20, 200])]),
    ("Memory per document beyond its text (MB)", "documents", [
        ("ours", "bench_scale:BM_MemoryPerDocument/{x}@mb_per_document", [1, 20, 200])]),
    ("One keystroke at the end of a file (ms)", "lines", [
        ("ours", "bench_editor:KeystrokeAtEndOfFile<Ours>/{x}", [10000, 100000, 1000000]),
        ("plain control", "bench_editor:KeystrokeAtEndOfFile<PlainTuned>/{x}", [10000, 100000, 1000000])]),
    ("Open then jump to the end and type (ms)", "lines", [
        ("ours", "bench_editor:OpenFileAndTypeAtEnd<Ours>/{x}", [10000, 100000, 1000000]),
        ("plain control", "bench_editor:OpenFileAndTypeAtEnd<PlainTuned>/{x}", [10000, 100000, 1000000])]),
]


def plot_data(results):
    lines = []
    for title, unit, series in PLOT:
        for name, measure, xs in series:
            for x in xs:
                try:
                    y = statistics.median(values(results, measure.format(x=x)))
                except KeyError:
                    continue
                lines.append(f"{title},{unit},{name},{x},{y:.6g}")
    return "\n".join(lines) + "\n"


def render(rows, results):
    lines = [BEGIN, "", "| What the user waits for | Baseline in the same run | Figure: median (lowest–highest) |",
             "|---|---|---|"]
    for r in rows:
        try:
            fig = figure(results, r)
        except KeyError as e:
            fig = f"not measured ({e.args[0]})"
        lines.append(f"| {r['what']} | {r['baseline']} | {fig} |")
    lines += ["", END]
    return "\n".join(lines)


def replace_block(readme, block):
    start, end = readme.find(BEGIN), readme.find(END)
    if start < 0 or end < start:
        sys.exit("README.md has no bench table block")
    return readme[:start] + block + readme[end + len(END):]


def check(rows, readme_text, bench_dir):
    start, end = readme_text.find(BEGIN), readme_text.find(END)
    if start < 0 or end < start:
        return ["README.md has no bench table block"]
    block = readme_text[start:end]
    problems = []
    sources = "\n".join(open(p, encoding="utf-8").read() for p in glob.glob(os.path.join(bench_dir, "*.cpp")))
    for r in rows:
        line = next((l for l in block.splitlines() if l.startswith(f"| {r['what']} |")), None)
        if line is None:
            problems.append(f"no row for: {r['what']}")
        elif not re.search(r"\d", line.split("|")[3]) or "not measured" in line:
            problems.append(f"no figure for: {r['what']}")
        for key in ("value", "base", "amount"):
            measure = (r.get(key) or "").strip()
            if measure in ("", "-"):
                continue
            binary, name, _ = split_measure(measure)
            function = re.split(r"[</]", name)[0]
            if not os.path.exists(os.path.join(bench_dir, binary.removeprefix("bench_") + ".cpp")):
                problems.append(f"no benchmark file for {measure}")
            elif not re.search(r"\b" + re.escape(function) + r"\b", sources):
                problems.append(f"no benchmark {function} for {measure}")
    return problems


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    ap = argparse.ArgumentParser()
    ap.add_argument("--rows", default=os.path.join(here, "table.tsv"))
    ap.add_argument("--readme", default=os.path.join(here, "..", "README.md"))
    ap.add_argument("--results", help="folder of the benchmarks' JSON; without it, only check")
    ap.add_argument("--plot-data", help="where to write the figure's data (CSV)")
    a = ap.parse_args()
    rows = read_rows(a.rows)
    with open(a.readme, encoding="utf-8") as f:
        readme = f.read()
    if not a.results:
        problems = check(rows, readme, here)
        for p in problems:
            print(p)
        print(f"{len(rows)} rows, {len(problems)} problems")
        return 1 if problems else 0
    results = load_results(a.results)
    block = render(rows, results)
    if a.plot_data:
        with open(a.plot_data, "w", encoding="utf-8") as f:
            f.write(plot_data(results))
    with open(a.readme, "w", encoding="utf-8") as f:
        f.write(replace_block(readme, block))
    print(block)
    return 0


if __name__ == "__main__":
    sys.exit(main())
