"""The memory contracts of the operations, read from the comments of the public header.

read(header) gives every operation that takes buffers, in the order of the header. The notation is explained in
docs/pages/footprints.md. Whatever does not follow it ends in a Mistake that names the operation and the parameter.
"""
import re
from dataclasses import dataclass, field
from pathlib import Path

LEVELS = [["||"], ["=="], ["<", ">"], ["&"], [">>"], ["+", "-"], ["*", "/", "%"]]  # from the loosest
FUNCTIONS = {"max": 2, "int32": 1}


class Mistake(Exception):
    pass


@dataclass(frozen=True)
class Expr:
    """Text, and the same as a tree: a number, a name, or an operator or function with its operands behind it."""

    text: str
    tree: object

    def names(self, tree=None):
        tree = self.tree if tree is None else tree
        if isinstance(tree, str):
            return {tree}
        return set().union(*map(self.names, tree[1:])) if isinstance(tree, tuple) else set()

    def value(self, values):
        """For values by name, of the parameters and definitions alike."""
        return evaluate(self.tree, values)


@dataclass(frozen=True)
class Part:
    """So many rows of so many bytes, each `apart` behind the one before it; all of that from each of the offsets."""

    rows: Expr
    bytes: Expr
    apart: Expr
    offsets: tuple

    def expressions(self):
        return (self.rows, self.bytes, self.apart, *self.offsets)


@dataclass(frozen=True)
class Access:
    """What is read and written from a pointer on; `always`, or only as much as that ("May read")."""

    reads: bool
    writes: bool
    always: bool
    parts: tuple
    text: str

    @property
    def direction(self):
        return {(1, 0): "in", (0, 1): "out", (1, 1): "inout"}[self.reads, self.writes]


@dataclass
class Parameter:
    name: str
    type: str  # as declared: "const uint8_t*"
    prose: str
    access: Access = None  # None for a number
    overlaps: dict = field(default_factory=dict)  # other parameter -> "equal", "done" or "any"

    @property
    def is_pointer(self):
        return self.type.endswith("*")

    @property
    def element(self):
        return self.type.removeprefix("const ").rstrip("*") if self.is_pointer else None

    @property
    def step(self):
        """What a step counts, "bytes" or "pixels"; None where the parameter is none."""
        found = None if self.is_pointer else re.match(r"(?:distance in )?(bytes|pixels) from|distance in (bytes)",
                                                      self.prose)
        return found and (found[1] or found[2])


@dataclass
class Operation:
    name: str
    group: str
    brief: str
    result: str
    parameters: list
    definitions: dict  # name -> Expr, each of parameters and of those before it
    needs: Expr = None

    def pointers(self):
        return [p for p in self.parameters if p.is_pointer]

    def numbers(self):
        return [p for p in self.parameters if not p.is_pointer]

    def values(self, arguments):
        """Of the numbers, by name, and of the definitions."""
        values = dict(arguments)
        for name, definition in self.definitions.items():
            values[name] = definition.value(values)
        return values

    def spans(self, parameter, arguments):
        """The bytes of a pointer for these numbers, as (offset, length), row by row."""
        values, spans = self.values(arguments), []
        for part in parameter.access.parts:
            rows, length, apart = (e.value(values) for e in (part.rows, part.bytes, part.apart))
            for offset in part.offsets:
                spans += [(offset.value(values) + row * apart, length) for row in range(rows) if length > 0]
        return spans

    def minimum(self, parameter):
        """The least positive value with which anything is touched, if 0 makes the operation do nothing."""
        def busy(value):
            values = {p.name: 64 for p in self.numbers()} | {parameter.name: value}
            return any(self.spans(p, values) for p in self.pointers())
        if parameter.is_pointer or parameter.step or busy(0):
            return None
        return next((value for value in range(1, 64) if busy(value)), None)


def evaluate(tree, values):
    if isinstance(tree, int):
        return tree
    if isinstance(tree, str):
        return values[tree]
    sign, *operands = tree
    if sign == "?:":
        condition, yes, no = operands
        return evaluate(yes if evaluate(condition, values) else no, values)
    a, b, *_ = *(evaluate(x, values) for x in operands), None
    if sign == "int32":
        return (a + 2**31) % 2**32 - 2**31
    if sign in "/%":
        quotient = abs(a) // abs(b) * (1 if (a < 0) == (b < 0) else -1)  # C truncates
        return quotient if sign == "/" else a - quotient * b
    return {"||": lambda: int(bool(a or b)), "==": lambda: int(a == b), "<": lambda: int(a < b),
            ">": lambda: int(a > b), "&": lambda: a & b, ">>": lambda: a >> b, "+": lambda: a + b,
            "-": lambda: a - b, "*": lambda: a * b, "max": lambda: max(a, b)}[sign]()


def expression(text):
    """Reads C, as far as the notation uses it."""
    tokens = re.findall(r"\s*(\d+|\w+|\|\||==|>>|[-+*/%&<>?:(),])", text)
    if "".join(tokens) != re.sub(r"\s", "", text):
        raise Mistake(f"no expression: {text}")
    tokens.append(None)

    def take(*signs):
        return tokens.pop(0) if tokens[0] in signs else None

    def need(sign):
        if not take(sign):
            raise Mistake(f"{sign} is missing in {text}")

    def choice():
        condition = binary(0)
        if not take("?"):
            return condition
        yes = choice()
        need(":")
        return ("?:", condition, yes, choice())

    def binary(level):
        if level == len(LEVELS):
            return primary()
        left = binary(level + 1)
        while sign := take(*LEVELS[level]):
            left = (sign, left, binary(level + 1))
        return left

    def primary():
        if take("("):
            inner = choice()
            need(")")
            return inner
        word = tokens.pop(0)
        if word is None or not re.match(r"\w", word):
            raise Mistake(f"a value is missing in {text}")
        if word.isdigit():
            return int(word)
        if word not in FUNCTIONS:
            return word
        need("(")
        operands = [choice()]
        while take(","):
            operands.append(choice())
        need(")")
        if len(operands) != FUNCTIONS[word]:
            raise Mistake(f"{word} takes {FUNCTIONS[word]} operands: {text}")
        return (word, *operands)

    tree = choice()
    if tokens != [None]:
        raise Mistake(f"not understood from {tokens[0]} on: {text}")
    return Expr(text, tree)


def split_at_commas(text):
    """At those outside of parentheses."""
    return [piece.strip() for piece in re.split(r",(?![^(]*\))", text)]


def part(text):
    shape, *places = re.split(r", from ", text)
    offsets = tuple(map(expression, split_at_commas(places[0]))) if places else (expression("0"),)
    if found := re.fullmatch(r"(.+) rows of (.+) bytes, (.+) apart", shape):
        return Part(*map(expression, found.groups()), offsets)
    if found := re.fullmatch(r"(.+) bytes", shape):
        return Part(expression("1"), expression(found[1]), expression("0"), offsets)
    raise Mistake(f"neither bytes nor rows of bytes: {text}")


ACCESS = re.compile(r"(Reads and writes|Reads|Writes|May read and write|May read) `([^`]*)`\.")
OVERLAP = re.compile(r"May (equal|overlap) `(\w+)`(?: or `(\w+)`)?(, or overlap rows of it that are done)?\.$")


def access(prose):
    found = ACCESS.findall(prose)
    if len(found) != 1:
        raise Mistake(f"{len(found)} accesses instead of one")
    words, text = found[0]
    return Access("ead" in words, "rite" in words, "May" not in words, tuple(map(part, text.split(" and "))),
                  text)


def overlaps(prose):
    found = OVERLAP.search(prose)
    if ("May equal" in prose or "May overlap" in prose) != bool(found):
        raise Mistake("what is said of overlap is not at the end, or in other words")
    if not found:
        return {}
    kind = "any" if found[1] == "overlap" else "done" if found[4] else "equal"
    return {name: kind for name in found.groups()[1:3] if name}


def comment_text(comment):
    """The lines of a comment without their asterisks. A formula that goes on in a line that begins like the item of a
    list would be one in the manual."""
    lines = [re.sub(r"^ \*? ?", "", line) for line in comment.strip("\n").split("\n")]
    inside = False
    for line in lines:
        if inside and re.match(r"\s*([-+*]|\d+\.)\s", line):
            raise Mistake(f"a formula breaks before what begins a list: {line.strip()}")
        inside ^= line.count("`") % 2 == 1
    return "\n".join(lines)


def operation(group, comment, result, name, declared):
    text = comment_text(comment)
    description, *described = re.split(r"^@(?=param|return)", text, flags=re.M)
    flat = " ".join(description.split())
    prose = {}
    for item in described:
        if found := re.match(r"param (\w+)\s+(.*)", item, flags=re.S):
            prose[found[1]] = " ".join(found[2].split())
    parameters = []
    for declaration in split_at_commas(" ".join(declared.split())):
        kind, parameter = re.fullmatch(r"(.*?)(\w+)", declaration).groups()
        parameters.append(Parameter(parameter, kind.strip(), prose.pop(parameter, "")))
    if prose:
        raise Mistake(f"no parameter is called {', '.join(prose)}")
    code = re.findall(r"(Needs )?`([^`]*)`", flat)
    definitions = {text.split(" = ")[0]: expression(text.split(" = ")[1]) for needs, text in code
                   if not needs and re.match(r"\w+ = ", text)}
    needs = [expression(text) for needs, text in code if needs]
    made = Operation(name, group, flat.split(". ")[0].rstrip("."), result, parameters, definitions, *needs[:1])
    check(made)
    return made


def check(op):
    """Every pointer has its access, of the direction that its type allows, and all names are known."""
    known = {p.name for p in op.numbers()}
    used = set()
    for name, definition in op.definitions.items():
        if not definition.names() <= known:
            raise Mistake(f"{name} is made of what is not known: {definition.text}")
        known.add(name)
        used |= definition.names()
    for p in op.pointers():
        try:
            p.access, p.overlaps = access(p.prose), overlaps(p.prose)
            for e in (e for part in p.access.parts for e in part.expressions()):
                if not e.names() <= known:
                    raise Mistake(f"not all names are known in {e.text}")
                used |= e.names()
            if p.access.writes == p.type.startswith("const"):
                raise Mistake("writes what is const, or does not write what is not")
            for other in p.overlaps:
                if other not in (q.name for q in op.pointers()) or other == p.name:
                    raise Mistake(f"cannot overlap {other}")
        except Mistake as mistake:
            raise Mistake(f"{p.name}: {mistake}") from None
    for p in op.numbers():
        if ACCESS.search(p.prose):
            raise Mistake(f"{p.name} is no pointer")
    if op.needs:
        used |= op.needs.names()
    for name in op.definitions:
        if name not in used:
            raise Mistake(f"{name} is defined and not used")


DECLARATION = re.compile(r"/\*\*\n(?P<comment>(?: \*(?!/)[^\n]*\n)+) \*/\n"
                         r"(?:PQX_API (?P<result>[\w* ]+?)\b(?P<name>pqx_Video\w+)\((?P<parameters>[^)]*)\);)?")


def read(header):
    """Every operation that the header declares."""
    return parse(Path(header).read_text())


def parse(text):
    operations, groups = [], ["none"]
    for found in DECLARATION.finditer(text):
        comment = found["comment"]
        if opened := re.search(r"@defgroup (\w+)", comment):
            groups.append(opened[1])
        if not found["name"]:
            continue
        try:
            operations.append(operation(groups[-1], comment, found["result"].strip(), found["name"], found["parameters"]))
        except Mistake as mistake:
            raise Mistake(f"{found['name']}: {mistake}") from None
    declared = re.findall(r"^PQX_API [^(;]*?\b(pqx_Video\w+)\(", text, flags=re.M)
    if missing := set(declared) - {o.name for o in operations}:
        raise Mistake(f"without a comment of this form: {', '.join(sorted(missing))}")
    return operations
