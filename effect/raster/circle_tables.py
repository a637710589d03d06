#!/usr/bin/env python3
"""Writes CircleTables.cpp: cosine and sine at every half degree, each rounded once from 60 digits.

    python3 effect/raster/circle_tables.py > effect/raster/CircleTables.cpp

The angle is folded into 0 to 45 degrees by exact whole numbers first, so the corners come out exactly
(cos 90 degrees is 0, sin 30 degrees is 0.5). Decimal to float is correctly rounded in Python.
"""
from decimal import Decimal, getcontext

getcontext().prec = 60
PI = Decimal("3.14159265358979323846264338327950288419716939937510582097494459230781640628620899")


def series(x, first):
    """x^first/first! - x^(first+2)/(first+2)! + ..., enough terms for 60 digits at x below 0.8."""
    term = x if first == 1 else Decimal(1)
    total, n = term, first
    while abs(term) > Decimal("1e-70"):
        term *= -x * x / ((n + 1) * (n + 2))
        total, n = total + term, n + 2
    return total


def sine(half_degrees):
    """Sine of half_degrees * 0.5 degrees as a float; half_degrees is a whole number."""
    i = half_degrees % 720
    if i >= 360:
        return 0.0 - sine(i - 360)
    if i > 180:
        return sine(360 - i)
    if i > 90:
        return float(series(PI * (180 - i) / 360, 0))
    return float(series(PI * i / 360, 1))


def table(name, values):
    lines = [f"const double {name}[circleSteps] = {{"]
    for row in range(0, 720, 4):
        lines.append("    " + ", ".join(v.hex() for v in values[row:row + 4]) + ",")
    return "\n".join(lines + ["};"])


print("// Written by circle_tables.py in this folder; change that, not this.")
print('#include "effect/raster/CircleTables.h"\n')
print("namespace vindrel {\n")
print("// clang-format off")
print(table("cosTable", [sine(i + 180) for i in range(720)]) + "\n")
print(table("sinTable", [sine(i) for i in range(720)]))
print("// clang-format on")
print("\n}  // namespace vindrel")
