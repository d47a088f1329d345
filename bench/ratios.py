#!/usr/bin/env python3
"""Turns report_bench's JSON into cost an item, ratio to 1,000 items, and ratio to the bare library."""
import json
import sys

BARE = {"SaveXml": ("BareWriteXml", "BareBuildAndWriteXml"), "LoadXml": ("BareReadXml",)}


def main():
    with open(sys.argv[1], encoding="utf-8") as stream:
        runs = json.load(stream)["benchmarks"]
    microseconds = {}
    for run in runs:
        if run.get("error_occurred"):
            print(f"{run['name']}: FAILED: {run.get('error_message')}")
            continue
        name, items = run["name"].split("/")[:2]
        microseconds[name, int(items)] = run["per_item"] * 1e6
    print(f"{'benchmark':22} {'items':>7} {'us/item':>9} {'to 1,000':>9}  to the library alone")
    for (name, items), cost in microseconds.items():
        ratio = cost / microseconds.get((name, 1000), cost)
        bare = "  ".join(
            f"{other} {cost / microseconds[other, items]:.2f}"
            for other in BARE.get(name, ()) if (other, items) in microseconds)
        print(f"{name:22} {items:>7} {cost:>9.3f} {ratio:>9.2f}  {bare}")


if __name__ == "__main__":
    main()
