#!/usr/bin/env python3
"""Deterministic synthetic data sets for the comparison benchmark (bench/compare.sh).

usage: gen_data.py KIND OUT_STEM [CASES] [SEED]        (seed default 7)

Writes OUT_STEM.names and OUT_STEM.data, one case per line, the class last.
The same kind, case count and seed always give byte-identical files.

KIND    default cases  shape
wide         100,000   10 attributes of 3,000 values v0..v2999 (30,000 items).
                       Zipf-distributed values (P(vr) ~ 1/(r+1)): about 115 values
                       per attribute reach 0.1 % of the cases. Class c0..c2 follows
                       the value index of a01 modulo 3 in 90 % of the cases.
large      1,000,000   20 attributes of 500 values. Each value is drawn uniformly in
                       60 % of the draws and from a Zipf law in 40 %, so every value
                       lies above 0.12 % of the cases (about 10,000 items frequent at
                       -s 0.001) while the first few lie at 2 to 6 %. Even attributes
                       copy the odd one before them in 30 % of the cases; class c0/c1
                       is the parity of a01's value index in 90 % of the cases.
binary       100,000   20 binary attributes b01..b20 (values 0, 1) and a class, all
                       driven by one hidden fair coin: attribute i agrees with it with
                       a probability falling from 0.92 (b01) to 0.75 (b20), the class
                       (c0/c1) in 95 % of the cases. Itemsets of ten agreeing items
                       stay above 10 % support: deep candidate trees.
many           3,000   60 attributes of 4 values in 12 blocks of 5. Each block has a
                       hidden value; each attribute takes it in 75 % of the cases and
                       a uniform value otherwise. Pairs across blocks are frequent at
                       5 % (about 6 %), rules come from within the blocks. Class
                       c0..c3 is block 1's hidden value in 80 % of the cases.
"""
import bisect
import random
import sys


def zipf_cum(nval, weight=1.0, uniform=0.0):
    """Cumulative probabilities of uniform * U(nval) + weight * Zipf(nval)."""
    z = [1.0 / (r + 1) for r in range(nval)]
    s = sum(z)
    cum, acc = [], 0.0
    for r in range(nval):
        acc += uniform / nval + weight * z[r] / s
        cum.append(acc)
    cum[-1] = 2.0  # no draw falls beyond the last value through rounding
    return cum


def write_names(stem, comment, classes, attrs):
    """attrs: list of (name, values)."""
    with open(stem + '.names', 'w') as f:
        f.write('| %s\n\n' % comment)
        f.write(', '.join(classes) + '.\n\n')
        for name, vals in attrs:
            f.write('%s: %s.\n' % (name, ', '.join(vals)))


def write_cases(stem, n, make_case):
    """make_case() returns the list of field strings of one case."""
    with open(stem + '.data', 'w') as f:
        out = []
        for _ in range(n):
            out.append(','.join(make_case()))
            if len(out) >= 10000:
                f.write('\n'.join(out) + '\n')
                out = []
        if out:
            f.write('\n'.join(out) + '\n')


def gen_wide(stem, n, rng):
    nattr, nval = 10, 3000
    vals = ['v%d' % i for i in range(nval)]
    classes = ['c0', 'c1', 'c2']
    cum = zipf_cum(nval)
    rand = rng.random

    def case():
        idx = [bisect.bisect_right(cum, rand()) for _ in range(nattr)]
        c = idx[0] % 3 if rand() < 0.9 else rng.randrange(3)
        return [vals[i] for i in idx] + [classes[c]]

    write_names(stem, 'wide: %d cases, %d attributes x %d Zipf values' % (n, nattr, nval),
                classes, [('a%02d' % (i + 1), vals) for i in range(nattr)])
    write_cases(stem, n, case)


def gen_large(stem, n, rng):
    nattr, nval = 20, 500
    vals = ['v%d' % i for i in range(nval)]
    classes = ['c0', 'c1']
    cum = zipf_cum(nval, weight=0.4, uniform=0.6)
    rand = rng.random

    def case():
        idx = [bisect.bisect_right(cum, rand()) for _ in range(nattr)]
        for i in range(1, nattr, 2):
            if rand() < 0.3:
                idx[i] = idx[i - 1]
        c = idx[0] % 2 if rand() < 0.9 else rng.randrange(2)
        return [vals[i] for i in idx] + [classes[c]]

    write_names(stem, 'large: %d cases, %d attributes x %d skewed values' % (n, nattr, nval),
                classes, [('a%02d' % (i + 1), vals) for i in range(nattr)])
    write_cases(stem, n, case)


def gen_binary(stem, n, rng):
    nattr = 20
    agree = [0.92 - 0.17 * i / (nattr - 1) for i in range(nattr)]
    bits = ['0', '1']
    classes = ['c0', 'c1']
    rand = rng.random

    def case():
        z = 1 if rand() < 0.5 else 0
        row = [bits[z if rand() < q else 1 - z] for q in agree]
        return row + [classes[z if rand() < 0.95 else 1 - z]]

    write_names(stem, 'binary: %d cases, %d binary attributes driven by one hidden coin'
                % (n, nattr), classes, [('b%02d' % (i + 1), bits) for i in range(nattr)])
    write_cases(stem, n, case)


def gen_many(stem, n, rng):
    nattr, nval, block = 60, 4, 5
    vals = ['v%d' % i for i in range(nval)]
    classes = ['c0', 'c1', 'c2', 'c3']
    rand, randrange = rng.random, rng.randrange

    def case():
        hidden = [randrange(nval) for _ in range(nattr // block)]
        row = [vals[hidden[i // block] if rand() < 0.75 else randrange(nval)]
               for i in range(nattr)]
        return row + [classes[hidden[0] if rand() < 0.8 else randrange(nval)]]

    write_names(stem, 'many: %d cases, %d attributes x %d values in blocks of %d'
                % (n, nattr, nval, block),
                classes, [('a%02d' % (i + 1), vals) for i in range(nattr)])
    write_cases(stem, n, case)


KINDS = {'wide': (gen_wide, 100000), 'large': (gen_large, 1000000),
         'binary': (gen_binary, 100000), 'many': (gen_many, 3000)}


def main():
    if len(sys.argv) < 3 or sys.argv[1] not in KINDS:
        sys.exit(__doc__)
    gen, n = KINDS[sys.argv[1]]
    stem = sys.argv[2]
    if len(sys.argv) > 3:
        n = int(sys.argv[3])
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else 7
    gen(stem, n, random.Random(seed))


if __name__ == '__main__':
    main()
