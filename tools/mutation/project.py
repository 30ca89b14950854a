"""What is changed, and how a changed copy is built and tried."""

import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
TIMEOUT = 60
BUILD_TIMEOUT = 3600
LEFT_OUT = ("build", ".git", "__pycache__", ".pytest_cache")
RESOURCES = ("res/edje/qivoui.edj", "subprojects/watch-port/theme/platform.edj")
HEADERS = "#include <Elementary.h>\n#include <gmock/gmock.h>\n#include <gtest/gtest.h>\n"
# Tests may access private members and sources may not, so each needs a precompiled header of its
# own.
COMPILER = """#!/bin/sh
case " $* " in
*" -fno-access-control "*" -MD "*) headers={tools}/tests.pch ;;
*" -MD "*) headers={tools}/sources.pch ;;
*) headers= ;;
esac
[ ! -f "$headers" ] || set -- -include-pch "$headers" "$@"
exec clang++ "$@"
"""
# The interface is in a header's text, so there is no need to build the sources, which takes longer.
INTERFACE = """BUILD_DIR=build /usr/bin/python3 -B tests/contract/interface.py |
cmp - tests/contract/interface.txt"""


def mirror(source, target):
    """Makes target the same as source and touches only what differs, so little is built again."""
    kept = set()
    for folder, folders, files in os.walk(source):
        folders[:] = [f for f in folders if not f.startswith(LEFT_OUT)]
        for name in files:
            path = pathlib.Path(folder, name)
            copy = target / path.relative_to(source)
            kept.add(copy)
            if not copy.exists() or copy.read_bytes() != path.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(path, copy)
                shutil.copymode(path, copy)
    for folder, folders, files in os.walk(target):
        folders[:] = [f for f in folders if not f.startswith(LEFT_OUT)]
        for path in (pathlib.Path(folder, name) for name in files):
            if path not in kept:
                path.unlink()


def run(command, folder, environment=None):
    """Status and output of a command; the status is None when it took too long."""
    try:
        done = subprocess.run(command, cwd=folder, env=environment, timeout=BUILD_TIMEOUT,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    except subprocess.TimeoutExpired:
        return None, ""
    status = None if done.returncode in (124, 137, -9) else done.returncode
    return status, done.stdout.decode("utf-8", "replace")


class Guide:
    """The guide: all of qivo-ui/, tried by the contract tests."""

    programs = ("contract-tests", "launch-tests")

    def __init__(self, root=ROOT):
        self.root = root

    def sources(self):
        files = sorted((self.root / "qivo-ui").rglob("*"))
        names = [str(f.relative_to(self.root)) for f in files if f.suffix in (".cpp", ".h")]
        return sorted(names, key=lambda name: (name.endswith(".h"), name))

    def prepare(self, scratch):
        """A copy of the tree with its own build, ready to be changed."""
        mirror(self.root, scratch)
        build = scratch / "build"
        if not (build / "build.ninja").exists():
            self._configure(scratch, build)
        programs = [f"tests/contract/{p}" for p in ("layout-tests", *self.programs)]
        self._need(["ninja", "-j2", "-C", str(build), *RESOURCES, *programs], scratch)

    def _configure(self, scratch, build):
        """Sets the build up with precompiled headers of the toolkit."""
        tools = scratch / "build-tools"
        shutil.rmtree(tools, ignore_errors=True)
        tools.mkdir()
        headers, compiler = tools / "headers.h", tools / "clang++"
        headers.write_text(HEADERS)
        compiler.write_text(COMPILER.format(tools=shlex.quote(str(tools))))
        compiler.chmod(0o755)
        self._need(["meson", "setup", str(build), "-Dwerror=false", "-Doptimization=0",
                    "-Ddebug=false", "-Db_staticpic=false", "-Dcpp_args=-w -ferror-limit=0"],
                   scratch, dict(os.environ, CXX=str(compiler), CXX_LD="gold"))
        arguments = self.arguments(scratch, "qivo-ui/common/NaviFrame.cpp")
        for name, more in (("sources", []), ("tests", ["-fno-access-control"])):
            self._need(["clang++", *arguments, *more, "-x", "c++-header", str(headers), "-o",
                        str(tools / f"{name}.pch")], build)

    @staticmethod
    def _need(command, folder, environment=None):
        status, output = run(command, folder, environment)
        if status != 0:
            raise RuntimeError(f"{shlex.join(map(str, command))} failed:\n{output[-3000:]}")

    def arguments(self, scratch, path):
        """How the build compiles a file, without the output's path; for a header, any source."""
        commands = json.loads((scratch / "build" / "compile_commands.json").read_text())
        stem = path if path.endswith(".cpp") else "qivo-ui/common/NaviFrame.cpp"
        command = next(c["command"] for c in commands if c["file"].endswith(stem))
        words = shlex.split(command)[1:]
        words = words[:words.index("-MD")]
        return [f"-I{scratch / 'build' / w[2:]}" if w.startswith("-I") and w[2:3] != "/" else w
                for w in words]

    def first_suites(self, path):
        """A filter for the suites in the test files that are named after a source, or nothing."""
        stem = pathlib.Path(path).stem
        suites = set()
        for file in (self.root / "tests" / "contract").rglob(f"{stem}*.cpp"):
            suites.update(re.findall(r"^TEST(?:_F|_P)?\((\w+)", file.read_text(), re.MULTILINE))
        return ":".join(f"{suite}.*:*/{suite}.*" for suite in sorted(suites))

    def steps(self, path):
        """The steps that a change of this file must pass: builds and test programs."""
        if path.endswith(".h"):
            yield self._build("layout-tests.p/ClassLayoutTest.cpp.o")
            yield ["timeout", "-s", "KILL", str(TIMEOUT), "sh", "-c", INTERFACE]
        for program in self.programs_for(path):
            yield self._build(program)
            yield from self._tests(program, path)

    def programs_for(self, path):
        return (*(("layout-tests",) if path.endswith(".h") else ()), *self.programs)

    def tests(self, path):
        """The steps that a built change must pass, the quick ones first."""
        first = self.first_suites(path)
        if first:
            yield from (self._test(program, first) for program in self.programs)
        yield from (self._test(program) for program in reversed(self.programs_for(path)))

    def _tests(self, program, path):
        first = self.first_suites(path)
        if first and program in self.programs:
            yield self._test(program, first)
        yield self._test(program)

    def build_all(self, scratch):
        return run(self._build("layout-tests", *self.programs), scratch)

    @staticmethod
    def _build(*targets):
        return ["ninja", "-j1", "-C", "build", *(f"tests/contract/{t}" for t in targets)]

    @staticmethod
    def _test(program, suites="*"):
        return ["timeout", "-s", "KILL", str(TIMEOUT), f"build/tests/contract/{program}",
                "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={suites}"]

    def environment(self, scratch):
        home = scratch / "build-home"
        home.mkdir(exist_ok=True, mode=0o700)
        return {"PATH": os.environ["PATH"], "HOME": str(home), "XDG_RUNTIME_DIR": str(home),
                "LANG": "C.UTF-8"}
