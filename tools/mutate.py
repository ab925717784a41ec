#!/usr/bin/env python3
"""Breaks one line in a source file at a time and tells which breaks no test notices.

    tools/mutate.py [--per-file N] [--every N] [--seed N] [FILE...]

A copy of the sources is built under build/mutation; the tree itself is never changed. The test
programs are those of build/release, which load the broken library in place of the sound one. A
break that does not compile is replaced by another. The exit status is 1 when a break survives that
is not listed in tools/mutants-equivalent.txt.
"""
import argparse
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutation"
SOURCES = WORK / "src"
BUILD = WORK / "build"
TESTS = ROOT / "build" / "release" / "tests"
EQUIVALENT = ROOT / "tools" / "mutants-equivalent.txt"
# Test programs that compile these themselves would not load what is broken.
LEFT_OUT = {"combiner/DirectCopy.cpp"}
FOLDERS = ("xml", "readers", "combiner", "encoding", "platform/src")

# The programs that look at a folder, the quick ones first.
PROGRAMS = {
    "xml": ("xml/xml_tests", "readers/readers_tests", "combiner/combiner_tests"),
    "readers": ("readers/readers_tests", "xml/xml_tests"),
    "combiner": ("combiner/combiner_tests", "scoring/scoring_tests"),
    "platform": ("platform/platform_tests", "readers/readers_tests"),
    "encoding": ("encoding/ext_name_tests", "encoding/converter_registry_tests",
                 "encoding/transcoding_memory_tests", "encoding/multibyte_string_tests",
                 "encoding/transcoding_tests", "encoding/unicode_forms_tests"),
}

# What is looked for in a line, and what takes its place.
BREAKS = (
    (r" == ", " != "), (r" != ", " == "), (r" < ", " <= "), (r" <= ", " < "),
    (r" > ", " >= "), (r" >= ", " > "), (r" && ", " || "), (r" \|\| ", " && "),
    (r" \+ 1\b", " + 2"), (r" - 1\b", " - 2"), (r"\breturn true;", "return false;"),
    (r"\breturn false;", "return true;"), (r"\breturn nullptr;", "std::abort();"),
    (r"\bif \(!", "if ("), (r"\bif \((?!const|auto|!)([^;]*)\) ", r"if (!(\1)) "),
    (r"^\s+[\w.>\[\]-]+(\.|->)?\w*\([^;]*\);$", ";"),  # a call whose result nobody wants
    (r"\b(0x[0-9A-F]{2,})\b", r"(\1 ^ 1)"), (r"\? (\w+) : (\w+)", r"? \2 : \1"),
    (r"\+\+", "--"), (r" \+= ", " -= "),
)


def files(wanted):
    found = sorted(p.relative_to(ROOT) for folder in FOLDERS
                   for p in (ROOT / folder).rglob("*") if p.suffix in (".cpp", ".h"))
    return [p for p in found if str(p) not in LEFT_OUT and (not wanted or str(p) in wanted)]


def code_lines(text):
    """Numbers of the lines that hold code to break: no comment, preprocessor or declaration."""
    for number, line in enumerate(text.splitlines()):
        code = line.strip()
        if code.startswith(("//", "#", "template", "using", "static_assert", "namespace", "///")):
            continue
        yield number, line.split("  // ")[0]


def breaks_of(text):
    for number, line in code_lines(text):
        for pattern, replacement in BREAKS:
            broken = re.sub(pattern, replacement, line, count=1)
            if broken != line:
                yield number, line, broken


def run(command, **options):
    return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          check=False, **options).returncode


def build():
    return run(["cmake", "--build", str(BUILD)]) == 0


def refresh():
    """Makes the copy equal to the tree. What is equal already keeps its time and is not built again;
    what a run that was stopped left broken gets a new one."""
    wanted = {}
    for name in ("CMakeLists.txt", "cmake", "include", "xml", "readers", "combiner", "encoding",
                 "platform"):
        source = ROOT / name
        for path in [source] if source.is_file() else source.rglob("*"):
            if path.is_file():
                wanted[SOURCES / path.relative_to(ROOT)] = path
    for target in SOURCES.rglob("*"):
        if target.is_file() and target not in wanted:
            target.unlink()
    for target, path in wanted.items():
        if not target.exists() or target.read_bytes() != path.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(path, target)


def prepare():
    SOURCES.mkdir(parents=True, exist_ok=True)
    refresh()
    options = ["-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -w", "-DMCXPRSUTIL_INSTALL=OFF",
               "-DMCXPRSUTIL_BUILD_TESTS=OFF", "-DMCXPRSUTIL_BUILD_EXAMPLES=OFF"]
    configured = run(["cmake", "-G", "Ninja", "-S", str(SOURCES), "-B", str(BUILD)] + options)
    if configured != 0 or not build():
        sys.exit("mutate: the sound library does not build")


def passes(program, seconds):
    environment = dict(os.environ, LD_LIBRARY_PATH=f"{BUILD}:{BUILD / 'platform'}")
    path = TESTS / program
    # a break may write without end: no file beyond 2 GiB, no more than 8 GiB of memory
    command = 'ulimit -v 8388608 -f 2097152; exec "$0" --gtest_fail_fast'
    return run(["bash", "-c", command, str(path)], env=environment, cwd=path.parent,
               timeout=seconds) == 0


def time_sound(folders):
    """Seconds that each program takes when nothing is broken."""
    seconds = {}
    for program in sorted({program for folder in folders for program in PROGRAMS[folder]}):
        start = time.monotonic()
        if not passes(program, None):
            sys.exit(f"mutate: {program} fails with the sound library")
        seconds[program] = time.monotonic() - start
    return seconds


def killer(folder, sound_seconds):
    """The first test program that notices, or None."""
    for program in PROGRAMS[folder]:
        try:
            # much longer than usual is endless, even on a busy machine
            if not passes(program, 30 + 4 * sound_seconds[program]):
                return program
        except subprocess.TimeoutExpired:
            return f"{program} (endless)"
    return None


def equivalents():
    """Breaks that change nothing a caller could see, each with its reason behind a tab."""
    if not EQUIVALENT.exists():
        return set()
    lines = EQUIVALENT.read_text().splitlines()
    return {line.split("\t")[0] for line in lines if line and not line.startswith("#")}


def try_breaks(path, count, chance, known, sound_seconds):
    """Yields (what, verdict) for `count` breaks of one file, as far as there are so many."""
    target = SOURCES / path
    text = target.read_text()
    candidates = list(breaks_of(text))
    chance.shuffle(candidates)
    done = 0
    for number, line, broken in candidates:
        if done == count:
            break
        what = f"{path}: {line.strip()} -> {broken.strip()}"
        if what in known:
            continue
        lines = text.splitlines(keepends=True)
        lines[number] = broken + "\n"
        target.write_text("".join(lines))
        verdict = killer(path.parts[0], sound_seconds) if build() else "does not compile"
        target.write_text(text)
        if verdict == "does not compile":
            continue
        done += 1
        yield f"{path}:{number + 1}", what, verdict
    build()


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--per-file", type=int, default=1, help="breaks per file (1)")
    parser.add_argument("--every", type=int, default=1, help="only every N-th file (1: all)")
    parser.add_argument("--seed", type=int, default=1, help="chooses the lines (1)")
    parser.add_argument("files", nargs="*", metavar="FILE")
    options = parser.parse_args()

    prepare()
    chosen = files(options.files)[::options.every]
    sound_seconds = time_sound({path.parts[0] for path in chosen})
    known = equivalents()
    tried, survivors = 0, []
    for path in chosen:
        chance = random.Random(f"{options.seed} {path}")
        for place, what, verdict in try_breaks(path, options.per_file, chance, known,
                                               sound_seconds):
            tried += 1
            print(f"{place}: {'SURVIVES' if verdict is None else verdict}", flush=True)
            if verdict is None:
                survivors.append(what)
    print(f"\n{tried} breaks, {tried - len(survivors)} noticed, {len(survivors)} survived")
    for what in survivors:
        print("  " + what)
    return 1 if survivors else 0


if __name__ == "__main__":
    sys.exit(main())
