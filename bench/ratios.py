#!/usr/bin/env python3
"""Prints the medians of a benchmark run, NAME beside its rival NAMEGiflib or NAMEPlain, with their ratio."""
import json
import sys

RIVALS = ('Giflib', 'Plain')

runs = {}
for run in json.load(open(sys.argv[1]))['benchmarks']:
    if run.get('aggregate_name') == 'median' and 'Mpixel/s' in run:
        name, _, argument = run['run_name'].rpartition('/')
        runs[name, run.get('label') or argument] = run['Mpixel/s']

for (name, label), speed in runs.items():
    for rival in RIVALS:
        other = runs.get((name + rival, label))
        if other:
            print(f'{name:28} {label:10} {speed:8.1f} Mpixel/s, {rival.lower()} {other:7.1f}, ratio {speed / other:5.2f}')
