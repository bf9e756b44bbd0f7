#!/usr/bin/env python3
"""The batch runner's data exports checked by other programs.

touchstone: the .s2p files of a Chebyshev band-pass (50/50 ohm) and a Butterworth
low-pass (50/200 ohm) are read by scikit-rf; port 2 is renormalised from Zin to Zout
by Kurokawa's power-wave formula for real references, and |S21| in dB must equal
ngspice's transducer gain of the exported deck (0.001 dB) and the program's Power
Effective Gain (0.01 dB) wherever it is above -100 dB.

csv: the gain plot of two open filters written as CSV reads back into the numbers of
`dump curve`.

Usage: exports_test.py touchstone|csv BATCH WORKDIR
"""
import csv
import math
import os
import re
import shutil
import subprocess
import sys

import numpy as np

CASES = {
    # name: (design lines, Zin, Zout)
    "chebyshev_bp": ("""> selfunction: selection(2) "Accept design"
> Getdata: 10M 1M 2 0.5 "" 5 50 50
> Getdata: Lossless
>? designtitle: Text1="Chebyshev band-pass" Command1
chebyshev
""", 50.0, 50.0),
    "butterworth_lp": ("""> selfunction: "LOW-PASS" "Accept design"
> Getdata: 10M 20M 3 "" 5 50 200
> Getdata: Lossless
>? designtitle: Text1="Butterworth low-pass" Command1
butterworth
""", 50.0, 200.0),
}


def runbatch(batch, work, name, script):
    path = os.path.join(work, name + ".txt")
    with open(path, "w") as f:
        f.write(script)
    r = subprocess.run([batch, path], cwd=work, capture_output=True, text=True, timeout=300)
    if r.returncode != 0:
        sys.exit(f"{name}: zelkfilter-batch failed ({r.returncode}): {r.stderr}")
    return r.stdout


def curve(text):
    """dump curve output -> {slot: [(x, value)]}"""
    out = {}
    for line in text.splitlines():
        p = line.split()
        if len(p) == 4 and p[0].isdigit():
            out.setdefault(int(p[0]), []).append((float(p[2]), float(p[3])))
    return out


def renormalise(s, z_old, z_new):
    """Kurokawa's renormalisation of an S matrix (N, 2, 2) from real references z_old to
    real references z_new (power waves)."""
    r = (np.asarray(z_new) - np.asarray(z_old)) / (np.asarray(z_new) + np.asarray(z_old))
    a = (1 - r) * np.sqrt(1 - r * r) / np.abs(1 - r)
    G = np.diag(r)
    A = np.diag(a)
    Ainv = np.diag(1 / a)
    eye = np.eye(2)
    return np.array([Ainv @ (m - G) @ np.linalg.inv(eye - G @ m) @ A for m in s])


def ngspice_gain(deck, work, f, zin, zout):
    """Transducer gain in dB of the deck at frequency f: 4 |V(out)|^2 Zin / Zout for the
    deck's 1 V source."""
    text = re.sub(r"^\.ac .*$", f".ac lin 1 {f!r} {f!r}", deck, flags=re.M)
    path = os.path.join(work, "point.cir")
    with open(path, "w") as fh:
        fh.write(text)
    r = subprocess.run(["ngspice", "-b", path], capture_output=True, text=True, timeout=60)
    for line in r.stdout.splitlines():
        p = line.split()
        if len(p) == 4 and p[0] == "0":
            vm = float(p[2])
            return 10 * math.log10(4 * vm * vm * zin / zout)
    sys.exit("ngspice gave no row for " + f"{f}:\n" + r.stdout + r.stderr)


def touchstone(batch, work):
    import skrf

    failures = 0
    for name, (design, zin, zout) in CASES.items():
        s2p, cir = name + ".s2p", name + ".cir"
        out = runbatch(batch, work, name, design + "> Getdata: accept\nPEG\ndump curve plotPEG\n"
                       f"export touchstone {s2p}\nexport spice {cir}\n")
        peg = curve(out)[0]
        text = open(os.path.join(work, s2p)).read()
        assert "# HZ S DB R 50" in text, name + ": option line"
        assert re.search(r"^! Zin = 50 ohm, Zout = %g ohm$" % zout, text, re.M), name + ": Zin/Zout comment"
        assert re.search(r"^! Design: ", text, re.M), name + ": design comment"
        net = skrf.Network(os.path.join(work, s2p))
        assert net.nports == 2 and len(net.f) == len(peg), name
        assert np.allclose(np.real(net.z0), zin), name
        s = renormalise(net.s, [zin, zin], [zin, zout])
        s21db = 20 * np.log10(np.abs(s[:, 1, 0]))
        deck = open(os.path.join(work, cir)).read()
        compared_peg = compared_spice = 0
        for i, (f, g) in enumerate(peg):
            assert abs(net.f[i] - f) <= 1e-9 * f, f"{name}: frequency {i}"
            if g <= -100:
                continue
            compared_peg += 1
            if abs(s21db[i] - g) > 0.01:
                failures += 1
                print(f"{name}: {f} Hz |S21| {s21db[i]:.5f} dB, PEG {g:.5f} dB")
            # ngspice at a sample of the points, each at exactly the file's frequency.
            if i % 8 == 0:
                compared_spice += 1
                gt = ngspice_gain(deck, work, net.f[i], zin, zout)
                if abs(s21db[i] - gt) > 0.001:
                    failures += 1
                    print(f"{name}: {f} Hz |S21| {s21db[i]:.6f} dB, ngspice {gt:.6f} dB")
        # Lossless and reciprocal: |S11|^2 + |S21|^2 = 1 after the renormalisation too.
        power = np.abs(s[:, 0, 0]) ** 2 + np.abs(s[:, 1, 0]) ** 2
        if not np.allclose(power, 1, atol=1e-3):
            failures += 1
            print(f"{name}: a lossless ladder loses power: {power.min()} .. {power.max()}")
        print(f"{name}: {compared_peg} points against PEG, {compared_spice} against ngspice")
        assert compared_peg > 50 and compared_spice > 5, name
    return failures


def csvcheck(batch, work):
    script = """>? designtitle: Text1="First" Command1
> selfunction: selection(0) "Accept design"
> Getdata: 10M 15M 3 "" 5 50 50
> Getdata: Lossless
butterworth
> filedialog: first.sch
savefilter
newfilter
>? designtitle: Text1="Second" Command1
> selfunction: selection(0) "Accept design"
> Getdata: 10M 15M .5 "" 5 50 50
> Getdata: Lossless
chebyshev
> filedialog: second.sch
savefilter
newfilter
> filedialog: first.sch
openfilter
> filedialog: second.sch
openfilter
> Getdata: accept
PEG
dump curve plotPEG
export csv plotPEG gain.csv
"""
    want = curve(runbatch(batch, work, "csv", script))
    assert sorted(want) == [0, 1], "two filters in the dump"
    with open(os.path.join(work, "gain.csv"), newline="") as f:
        rows = list(csv.reader(f))
    head, body = rows[0], rows[1:]
    assert head[0] == "Frequency (Hz)", head
    assert len(head) == 3 and all(h.endswith("(dB)") for h in head[1:]), head
    assert len(body) == len(want[0]), (len(body), len(want[0]))
    failures = 0
    for i, row in enumerate(body):
        for s in (0, 1):
            x, v = want[s][i]
            if float(row[0]) != x or float(row[1 + s]) != v:
                failures += 1
                if failures < 5:
                    print(f"row {i} filter {s + 1}: csv {row[0]} {row[1 + s]}, dump {x} {v}")
    return failures


def main():
    what, batch, work = sys.argv[1], os.path.abspath(sys.argv[2]), os.path.abspath(sys.argv[3])
    if what == "touchstone" and shutil.which("ngspice") is None:
        print("ngspice is not installed")
        return 77
    shutil.rmtree(work, ignore_errors=True)
    os.makedirs(work)
    failures = touchstone(batch, work) if what == "touchstone" else csvcheck(batch, work)
    print("failures:", failures)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
