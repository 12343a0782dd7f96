#!/usr/bin/python3
"""Plants the faults of list.txt in a copy of the tree, one at a time, and fails unless the tests find each of them.

run.py SOURCE_DIR WORK_DIR [PATTERN]      PATTERN: only the entries that match it
"""
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

source, work = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
pattern = sys.argv[3] if len(sys.argv) > 3 else ""
tree, build = work / "tree", work / "build"


def tokens(text):
    """Matches the text with any white space between its words and signs."""
    words = re.findall(r"\w+|[^\w\s]", text)
    is_word = [bool(re.match(r"\w", word)) for word in words] + [False]
    gaps = [r"\s+" if one and two else r"\s*" for one, two in zip(is_word, is_word[1:])]
    body = "".join(re.escape(word) + gap for word, gap in zip(words, gaps[:-1] + [""]))
    return re.compile(r"\b" * is_word[0] + body + r"\b" * is_word[-2])


def entries():
    """(program and its argument, file, text, replacement) of each line "PROGRAM FILE TEXT => REPLACEMENT"."""
    for line in (source / "tests/mutants/list.txt").read_text().splitlines():
        if line and line[0] != "#" and re.search(pattern, line):
            program, path, edit = line.split(None, 2)
            text, replacement = re.split(r" =>(?: |$)", edit)
            yield program, path, text, replacement


def planted(path, text, replacement):
    original = (tree / path).read_text()
    found = tokens(text).findall(original)
    if len(found) != 1:
        sys.exit(f"found {len(found)} times: {path} {text}")
    return original, tokens(text).sub(lambda _: replacement, original)


def command(program):
    program, _, argument = program.partition(":")
    if argument:
        return program, [next(build.glob(f"tests/*/{program}"), build / program), argument]
    return program + "_tests", [next(build.glob(f"**/{program}_tests"), build), "--gtest_fail_fast", "--gtest_brief=1"]


def compiles(program):
    with open(work / "log", "w") as log:
        return not subprocess.call(["cmake", "--build", build, "--target", command(program)[0]], stdout=log, stderr=log)


def passes(program):
    """Nobody's seed: a fault that is found is found again."""
    environment = {name: value for name, value in os.environ.items() if name != "PQX_TEST_SEED"}
    try:
        return not subprocess.call(command(program)[1], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   timeout=300, env=environment)
    except subprocess.TimeoutExpired:
        return False


shutil.rmtree(work, ignore_errors=True)
shutil.copytree(source, tree, ignore=shutil.ignore_patterns(".git", "build*"))
faults = list(entries())
for _, *edit in faults:
    planted(*edit)
subprocess.check_call(["cmake", "-S", tree, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release", "-DPQX_BUILD_TESTS=ON"],
                      stdout=subprocess.DEVNULL)
for program in sorted({fault[0] for fault in faults}):
    if not compiles(program) or not passes(program):
        sys.exit(f"{program} fails without any fault")

survivors = 0
for program, path, text, replacement in faults:
    original, faulty = planted(path, text, replacement)
    (tree / path).write_text(faulty)
    if not compiles(program):
        sys.exit((work / "log").read_text() + f"does not compile: {path} {text} => {replacement}")
    if passes(program):
        survivors += 1
        print(f"SURVIVES: {program} {path} {text} => {replacement}", flush=True)
    (tree / path).write_text(original)
print(f"{len(faults) - survivors} of {len(faults)} faults found")
sys.exit(survivors > 0 or not faults)
