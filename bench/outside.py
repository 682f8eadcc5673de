"""Reads a callgrind file: how much was spent outside calls of the registry's operations, and where."""

import collections
import re
import sys

OPERATION = re.compile(r"^(IO|CF|__CF|MemoryRegistry::conformsTo)")


def main(path):
    names = {}
    inside = outside_calls = total = 0
    self_cost = collections.Counter()
    function = None
    callee = None
    after_call = False

    def name(text):
        number, _, label = text.partition(" ")
        if label:
            names[number] = label
        return names[number]

    with open(path, encoding="utf-8", errors="replace") as lines:
        for line in lines:
            line = line.rstrip("\n")
            if line.startswith("fn="):
                function = name(line[3:])
            elif line.startswith("cfn="):
                callee = name(line[4:])
            elif line.startswith("calls="):
                after_call = True
            elif line[:1].isdigit() or line[:1] in "+-*":
                fields = line.split()
                cost = int(fields[1]) if len(fields) > 1 else 0
                if after_call:
                    after_call = False
                    if OPERATION.match(callee) and not OPERATION.match(function):
                        inside += cost
                else:
                    total += cost
                    self_cost[function] += cost
    print(f"total {total}  inside the registry's operations {inside}  "
          f"outside {total - inside} ({100 * (total - inside) / total:.1f} %)")
    for label, cost in self_cost.most_common(12):
        print(f"  {100 * cost / total:5.1f} %  {label[:100]}")


main(sys.argv[1])
