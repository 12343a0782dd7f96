#!/usr/bin/env python3
"""generate.py HEADER json VERSION | tests | plain: prints what follows from the public header.

json is the description of the interface that is installed, tests a C++ source with what operations may touch, plain
declarations of the plain forms.
"""
import json
import sys

import contract


def described(expression):
    return {"text": expression.text, "tree": expression.tree}


def described_part(part):
    if part.rows.text == "1" and part.apart.text == "0":
        return {"bytes": described(part.bytes), "from": [described(o) for o in part.offsets]}
    return {"rows": described(part.rows), "bytes": described(part.bytes), "apart": described(part.apart),
            "from": [described(o) for o in part.offsets]}


def described_parameter(operation, p):
    if p.is_pointer:
        promises = {name: [other for other, kind in p.overlaps.items() if kind == word]
                    for word, name in (("equal", "may_equal"), ("any", "may_overlap"), ("done", "may_overlap_done"))}
        return {"name": p.name, "type": p.type, "direction": p.access.direction, "always": p.access.always,
                "text": p.access.text, "parts": [described_part(part) for part in p.access.parts],
                **{name: others for name, others in promises.items() if others}}
    if p.step:
        return {"name": p.name, "type": p.type, "step": p.step}
    minimum = operation.minimum(p)
    return {"name": p.name, "type": p.type, **({"minimum": minimum} if minimum else {})}


def as_json(operations, version):
    """One line for each definition and parameter, so that differences of releases can be read."""
    entries = []
    for o in operations:
        lines = [json.dumps(described_parameter(o, p)) for p in o.parameters]
        definitions = [json.dumps({"name": name, **described(d)}) for name, d in o.definitions.items()]
        needs = f'\n     "needs": {json.dumps(described(o.needs))},' if o.needs else ""
        made = f'\n     "definitions": [\n      {f",{chr(10)}      ".join(definitions)}],' if definitions else ""
        entries.append(f'    {{"name": "{o.name}", "group": "{o.group}", "returns": "{o.result}",\n'
                       f'     "brief": {json.dumps(o.brief)},{needs}{made}\n'
                       f'     "parameters": [\n      {f",{chr(10)}      ".join(lines)}]}}')
    return f'{{\n  "format": 1,\n  "version": "{version}",\n  "operations": [\n{f",{chr(10)}".join(entries)}\n  ]\n}}\n'


def in_cpp(tree):
    """An expression of numbers wide enough for every result."""
    if not isinstance(tree, tuple):
        return str(tree)
    sign, *operands = tree
    operands = [in_cpp(operand) for operand in operands]
    if sign == "?:":
        return f"({operands[0]} ? Wide({operands[1]}) : Wide({operands[2]}))"
    if sign == "max":
        return f"std::max<Wide>({', '.join(operands)})"
    if sign == "int32":
        return f"Wide(int32_t({operands[0]}))"
    return f"({f' {sign} '.join(operands)})"


def used_names(operation):
    """Names of numbers and definitions that the formulas need."""
    names = set()
    for p in operation.pointers():
        names |= {name for part in p.access.parts for e in part.expressions() for name in e.names()}
    for name, definition in reversed(operation.definitions.items()):
        names |= definition.names() if name in names else set()
    return names


def in_test(operation):
    used, lines = used_names(operation), []
    for k, p in enumerate(operation.parameters):
        if p.name in used:
            lines.append(f"const Wide {p.name} = ints[{k}];")
    lines += [f"const Wide {name} = {in_cpp(d.tree)};" for name, d in operation.definitions.items() if name in used]
    rows = []
    for p in operation.parameters:
        parts = [f"row({', '.join(in_cpp(e.tree) for e in (part.rows, part.bytes, part.apart, offset))})"
                 for part in (p.access.parts if p.access else ()) for offset in part.offsets]
        rows.append(f"{{{', '.join(parts)}}}")
    parameters = []
    for p in operation.parameters:
        fields = [f'.name = "{p.name}"']
        if p.access:
            fields += [f".reads = {str(p.access.reads).lower()}", f".writes = {str(p.access.writes).lower()}",
                       f".always = {str(p.access.always).lower()}", f".fill = any<{p.element}>"]
            overlaps = [f"{{{[q.name for q in operation.parameters].index(other)}, Overlaps::{kind}}}"
                        for other, kind in p.overlaps.items()]
            fields += [f".overlaps = {{{', '.join(overlaps)}}}"] if overlaps else []
        else:
            fields += [".is_step = true"] if p.step else []
        parameters.append(f"{{{', '.join(fields)}}}")
    needs = "[](const int*) { return true; }"
    if operation.needs:
        names = [f"const Wide {p.name} = ints[{k}]; " for k, p in enumerate(operation.parameters)
                 if p.name in operation.needs.names()]
        needs = f"[](const int* ints) {{ {''.join(names)}return bool({in_cpp(operation.needs.tree)}); }}"
    body = "\n           ".join(lines + [f"return {{{', '.join(rows)}}};"])
    parameters = f",{chr(10)}         ".join(parameters)
    numbers = " ints" if any("= ints[" in line for line in lines) else ""
    return (f'    [](Contracts& all) {{\n      all["{operation.name}"] = {{\n        .parameters = {{\n'
            f"         {parameters}}},\n"
            f"        .touched = [](const int*{numbers}) -> std::vector<std::vector<Rows>> {{\n           {body}\n         }},\n"
            f"        .needs = {needs},\n        .run = erase({operation.name.split('#')[0]})}};\n    }},\n")


def as_tests(operations):
    return ('// Made by tools/contract/generate.py from pqx_video.h.\n#include <algorithm>\n#include <limits>\n\n'
            '#include "contract.h"\n#include "pqx_video.h"\n\nnamespace test {\nnamespace {\n\n'
            "__extension__ typedef __int128 Wide;\nusing Contracts = std::map<std::string, Contract>;\n\n"
            "int64_t narrow(Wide value) {\n  using Limits = std::numeric_limits<int64_t>;\n"
            "  return int64_t(std::clamp<Wide>(value, Limits::min(), Limits::max()));\n}\n"
            "Rows row(Wide count, Wide bytes, Wide apart, Wide offset) {\n"
            "  return {narrow(count), narrow(bytes), narrow(apart), narrow(offset)};\n}\n\n"
            "// Functions of their own, as one of all of them takes a compiler long.\n"
            f"void (*const additions[])(Contracts&) = {{\n{''.join(map(in_test, operations))}}};\n\n}}  // namespace\n\n"
            "const Contracts& contracts() {\n  static const Contracts& all = *[] {\n"
            "    auto* const made = new Contracts;\n    for (auto* add : additions) add(*made);\n    return made;\n"
            "  }();\n  return all;\n}\n\n}  // namespace test\n")


def as_plain(operations):
    """Every operation as a function of its own name in namespace plain."""
    names = "".join(f"decltype({o.name}) {o.name.replace('pqx_Video', '').lstrip('_')};\n" for o in operations)
    return ("/// Every operation as the plain loop that its contract in pqx_video.h describes. The conversions take the public\n"
            "/// tables, as their contracts do. Made from there.\n#pragma once\n\n"
            f'#include "pqx_video.h"\n\nnamespace plain {{\n\n{names}\n}}  // namespace plain\n')


def main(header, what, *more):
    operations = contract.read(header)
    if what == "json":
        print(as_json(operations, *more), end="")
    elif what == "tests":
        print(as_tests(operations), end="")
    elif what == "plain":
        print(as_plain(operations), end="")
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    try:
        main(*sys.argv[1:])
    except contract.Mistake as mistake:
        sys.exit(f"{sys.argv[1]}: {mistake}")
