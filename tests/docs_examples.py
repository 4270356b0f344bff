#!/usr/bin/env python3
"""Runs what README.md and docs/*.md show, and compares what it prints with what stands below it.

    docs_examples.py SOURCE_DIR BUILD_DIR COMPILER [--cc COMMAND] [--update]

Blocks are indented by four spaces or fenced. In both kinds a line "$ COMMAND" is run, and the lines
up to the next one are what it prints; a block that begins with (set-logic is a script, which the
command decides. Fences say more in their first line, LANGUAGE MARK...:

    console, none     as above
    sh                a script for bash, which has to end with status 0
    smt2              a script for the command, likewise
    cpp               compiled, if it is a whole program, and linked as `program`, which later
                      commands run
    c                 the same, by the command of --cc, or cc

    file=NAME         the block is a file that later commands read
    needs=A,B         skipped unless these programs, or files of the tree or the build, are there
    numbers=vary      numbers in the output are those of a machine and a day
    skip=REASON       not run

What a reader need not see is done by a line <!-- run: COMMAND -->.

The examples of one document share a folder, which has links to the tree and to build/release,
whatever the build is. --update writes what commands print into the documents.
"""
import collections
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import textwrap

TIME_LIMIT = 300  # seconds for a command
FENCE = re.compile(r"^( *)```(.*)$")
PREPARATION = re.compile(r"^<!-- run: (.*) -->$")
LANGUAGES = ("", "console", "sh", "smt2", "cpp", "c")
MARKS = ("file", "needs", "numbers", "skip")

# A piece of a document. `line` is the index of the first of `lines`, which have lost their indent.
Block = collections.namedtuple("Block", "language marks line indent lines")


def read_info(info):
    """The language and the marks that the first line of a fence gives."""
    words = shlex.split(info)
    language = words.pop(0) if words and "=" not in words[0] else ""
    marks = dict(word.partition("=")[::2] for word in words)
    unknown = [mark for mark in marks if mark not in MARKS]
    if unknown or language not in LANGUAGES + ("text", "cmake"):
        raise ValueError(f"unknown language or mark in '```{info}'")
    return language, marks


def read_blocks(text):
    """The blocks of a document in order."""
    lines = text.splitlines()
    at = 0
    while at < len(lines):
        first = at
        fence = FENCE.match(lines[at])
        preparation = PREPARATION.match(lines[at])
        at += 1
        if fence:
            while at < len(lines) and lines[at].strip() != "```":
                at += 1
            indent = len(fence.group(1))
            body = [line[indent:] for line in lines[first + 1:at]]
            yield Block(*read_info(fence.group(2)), first + 1, indent, body)
            at += 1
        elif preparation:
            yield Block("sh", {}, first, 0, [preparation.group(1)])
        elif lines[first].startswith("    "):
            while at < len(lines) and lines[at].startswith("    "):
                at += 1
            body = textwrap.dedent("\n".join(lines[first:at])).splitlines()
            indent = len(lines[first]) - len(body[0])
            yield Block("", {}, first, indent, body)


def find_commands(block):
    """The commands of a block, each with the range of the lines that are its output."""
    starts = [i for i, line in enumerate(block.lines) if line.startswith("$ ")]
    for start, end in zip(starts, starts[1:] + [len(block.lines)]):
        yield block.lines[start][2:], start + 1, end


def alike(text, numbers):
    """What is compared of a text."""
    text = text.rstrip("\n")
    return re.sub(" +", " ", re.sub(r"\d+(\.\d+)?", "0", text)) if numbers == "vary" else text


class Document:
    """One document, its folder, and what came of its blocks."""

    def __init__(self, path, source, build, compilers, folder):
        self.path = path
        self.source = source
        self.build = build
        self.compilers = compilers
        self.folder = folder
        self.counts = collections.Counter()
        self.updates = []  # first line, last line, new lines
        for entry in source.iterdir():
            if entry.name not in ("build", "run", ".git"):
                (folder / entry.name).symlink_to(entry)
        (folder / "build").mkdir()
        (folder / "build" / "release").symlink_to(build)
        # What ./run calls, once everything is built.
        (folder / "run").symlink_to(build / "vorn")
        self.environment = dict(os.environ)
        self.environment["PATH"] = f"{build}:{build / 'examples'}:{os.environ['PATH']}"

    def place(self, line):
        """FILE:LINE of an index into the lines of the document."""
        return f"{self.path.relative_to(self.source)}:{line + 1}"

    def run(self, command):
        """The exit status and everything that a command prints."""
        try:
            done = subprocess.run(command, cwd=self.folder, env=self.environment, text=True,
                                  errors="replace", stdin=subprocess.DEVNULL, timeout=TIME_LIMIT,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        except subprocess.TimeoutExpired:
            return None, f"no end within {TIME_LIMIT} s"
        return done.returncode, done.stdout

    def judge(self, kind, line, passed, what):
        """Counts one example, and says what is wrong with it."""
        self.counts[kind] += 1
        if not passed:
            self.counts["failed"] += 1
            print(f"FAILED {self.place(line)}: {what}")

    def reason_to_skip(self, block):
        """Why a block is not run, or None."""
        missing = [name for name in block.marks.get("needs", "").split(",") if name
                   and not shutil.which(name) and not (self.folder / name).exists()]
        if missing:
            return f"needs {', '.join(missing)}"
        if block.language in ("cpp", "c") and "main(" not in "\n".join(block.lines):
            return "no whole program"
        return block.marks.get("skip")

    def check(self, block):
        """Does with a block what its language and its marks say."""
        reason = self.reason_to_skip(block)
        text = "\n".join(block.lines) + "\n"
        if reason:
            self.counts["skipped"] += 1
            print(f"SKIPPED {self.place(block.line)}: {reason}")
        elif "file" in block.marks:
            (self.folder / block.marks["file"]).write_text(text)
        elif block.language == "sh":
            self.check_status("scripts", block, ["bash", "-e", "-c", text])
        elif block.language in ("cpp", "c"):
            file = f"program.{block.language}"
            (self.folder / file).write_text(text)
            self.check_status("programs", block, [*self.compilers[block.language], file])
        elif block.language == "smt2" or text.startswith("(set-logic"):
            (self.folder / "script.smt2").write_text(text)
            self.check_status("formulas", block, ["vorn", "script.smt2"])
        else:
            self.check_commands(block)

    def check_status(self, kind, block, command):
        """Runs what only has to succeed."""
        status, output = self.run(command)
        self.judge(kind, block.line, status == 0, f"exit status {status}\n{output}")

    def check_commands(self, block):
        """Runs the commands of a block and compares what they print."""
        for command, first, last in find_commands(block):
            expected = "\n".join(block.lines[first:last])
            output = self.run(["bash", "-c", command])[1]
            numbers = block.marks.get("numbers")
            passed = alike(expected, numbers) == alike(output, numbers)
            if not passed:
                lines = [" " * block.indent + line for line in output.rstrip("\n").splitlines()]
                self.updates.append((block.line + first, block.line + last, lines))
            self.judge("commands", block.line + first - 1, passed, f"{command}\n{output}")

    def update(self):
        """Replaces the outputs in the document that were not those of their commands."""
        lines = self.path.read_text().splitlines()
        for first, last, output in reversed(self.updates):
            lines[first:last] = output
        self.path.write_text("\n".join(lines) + "\n")


def find_compilers(source, build, compiler, c_compiler):
    """What compiles and links a program of each language."""
    usual = ["-Wall", "-Wextra", "-Werror", f"-I{source}", f"-I{build / 'include'}"]
    # The library comes before the program's name on the line: it must not be dropped as unused.
    linked = ["-o", "program", "-Wl,--no-as-needed", f"-L{build}", "-lvorn", f"-Wl,-rpath,{build}"]
    return {"cpp": [*shlex.split(compiler), "-std=c++20", *usual, *linked, "-lgmpxx", "-lgmp"],
            "c": [*shlex.split(c_compiler), "-std=c11", "-pedantic", *usual, *linked]}


def main():
    arguments = sys.argv[1:]
    c_compiler = "cc"
    if "--cc" in arguments:
        at = arguments.index("--cc")
        c_compiler = arguments[at + 1]
        del arguments[at:at + 2]
    source, build = (pathlib.Path(argument).resolve() for argument in arguments[:2])
    compilers = find_compilers(source, build, arguments[2], c_compiler)
    counts = collections.Counter()
    for path in [source / "README.md", *sorted((source / "docs").glob("*.md"))]:
        with tempfile.TemporaryDirectory() as folder:
            document = Document(path, source, build, compilers, pathlib.Path(folder))
            for block in read_blocks(path.read_text()):
                document.check(block)
            counts += document.counts
            if "--update" in arguments[3:]:
                document.update()
    print(", ".join(f"{counts[kind]} {kind}" for kind in
                    ("commands", "scripts", "formulas", "programs", "skipped", "failed")))
    # A reader of blocks that finds nothing would pass too.
    ran = all(counts[kind] > 0 for kind in ("commands", "scripts", "formulas", "programs"))
    sys.exit(0 if ran and counts["failed"] == 0 else 1)


if __name__ == "__main__":
    main()
