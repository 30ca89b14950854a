"""The script that changes the sources one place at a time, on a source of three lines."""

import contextlib
import fcntl
import pathlib
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).parents[2]
sys.path.insert(0, str(ROOT / "tools" / "mutation"))

import explained  # noqa: E402
import trial  # noqa: E402

TOY = """int Limit(int value)
{
    if (value > 10)
    {
        return 10;
    }
    return value;
}
"""
TEST = """int Limit(int value);
int main() { return Limit(11) == 10 && Limit(3) == 3 && Limit(10) == 10 ? 0 : 1; }
"""
AT_THE_LIMIT = "toy.cpp: Limit\n- if (value > 10)\n+ if (value >= 10)"


def run(*arguments):
    return subprocess.run([ROOT / "script" / "mutate", *arguments], capture_output=True, text=True)


class Toy:
    """A project of one function and one test."""

    @staticmethod
    def prepare(_scratch):
        """Stands ready."""

    @staticmethod
    def arguments(_scratch, _path):
        return ["-std=c++17"]

    @staticmethod
    def steps(_path):
        yield ["c++", "-w", "-o", "toy", "toy.cpp", "test.cpp"]
        yield ["timeout", "-s", "KILL", "10", "./toy"]

    @staticmethod
    def tests(_path):
        yield ["timeout", "-s", "KILL", "10", "./toy"]

    def build_all(self, scratch):
        return trial.run(next(self.steps("toy.cpp")), scratch)

    @staticmethod
    def environment(_scratch):
        return {"PATH": "/usr/bin:/bin"}


@pytest.fixture(name="toy")
def _toy(tmp_path):
    (tmp_path / "toy.cpp").write_text(TOY)
    (tmp_path / "test.cpp").write_text(TEST)
    (tmp_path / "common").mkdir()
    (tmp_path / "common" / "Log.h").write_text("#define QIVO_LOG_MARK()\n")
    return tmp_path


def changes_of(folder, *kinds, path="toy.cpp"):
    project = Toy()
    project.arguments = lambda scratch, path: ["-std=c++17", f"-I{folder}"]
    return [m for m in trial.mutants_of(project, folder, [path]) if m.kind in kinds]


def tried(folder, mutants):
    project = Toy()
    project.steps = lambda path: iter([["c++", "-w", "-I.", "-o", "toy", "toy.cpp", "test.cpp"],
                                       ["timeout", "-s", "KILL", "10", "./toy"]])
    record = trial.Record(folder / "results.jsonl")
    trial.try_all(project, [folder, folder], mutants, record, lambda *_: None)
    return {m.key: record.results[trial.identity(m)] for m in mutants}


@pytest.mark.parametrize("arguments, named", [
    (["--bogus"], "--bogus"),
    (["--sample", "none"], '"none"'),
    (["--sample", "0"], '"0"'),
    (["--only", "qivo-ui/nowhere"], '"qivo-ui/nowhere"'),
    (["more"], "more"),
])
def test_wrong_use_is_named_in_one_line_with_status_2(arguments, named):
    result = run(*arguments)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.count("\n") == 1 and named in result.stderr


def test_a_second_run_at_the_same_time_is_refused():
    folder = ROOT / "build" / "mutation"
    folder.mkdir(parents=True, exist_ok=True)
    with (folder / "lock").open("w") as lock:
        # A real run may hold it as well.
        with contextlib.suppress(BlockingIOError):
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        done = run("--report")
    assert done.returncode == 2
    assert done.stderr == f"script/mutate: another run works in {folder}\n"


def test_help_says_what_it_takes():
    result = run("--help")
    assert (result.returncode, result.stderr) == (0, "")
    assert all(o in result.stdout for o in ("--sample N", "--again", "--report"))


def test_tells_the_change_that_no_test_notices_from_those_that_one_does(toy):
    results = tried(toy, changes_of(toy, "operator altered", "condition never",
                                    "condition always", "statement left out"))
    assert results.pop(AT_THE_LIMIT) == "unnoticed"
    assert len(results) == 3
    assert set(results.values()) == {"noticed"}


def test_a_change_that_does_not_compile_keeps_no_other_from_being_tried(toy):
    (toy / "toy.cpp").write_text(TOY.replace("> 10", "> static_cast<int>(sizeof(char[9]) + 1)"))
    results = tried(toy, changes_of(toy, "number altered", "condition never", "left out"))
    assert "noticed" in results.values()


def test_tries_the_functions_of_a_header_that_is_read_twice(toy):
    (toy / "toy.h").write_text(f"#ifndef TOY_H\n#define TOY_H\ninline {TOY}#endif\n")
    (toy / "toy.cpp").write_text('#include "toy.h"\n#include "toy.h"\n')
    (toy / "test.cpp").write_text('#include "toy.h"\n' + TEST)
    results = tried(toy, changes_of(toy, "operator altered", "condition never", path="toy.h"))
    assert sorted(results.values()) == ["noticed", "unnoticed"]


def test_leaves_the_source_as_it_was_and_goes_on_where_it_stopped(toy):
    mutants = changes_of(toy, "operator altered", "condition never")
    tried(toy, mutants[:1])
    kept = (toy / "results.jsonl").read_text()
    tried(toy, mutants)
    assert (toy / "toy.cpp").read_text() == TOY
    assert (toy / "results.jsonl").read_text().startswith(kept)
    assert len((toy / "results.jsonl").read_text().splitlines()) == len(mutants)


def test_finds_the_same_changes_every_time(toy):
    first, second = ([trial.identity(m) for m in changes_of(toy, "operator altered")]
                     for _ in range(2))
    assert first == second and first


def test_a_comment_makes_no_other_change_of_it_but_a_text_does(toy):
    first = [trial.identity(m) for m in changes_of(toy, "operator altered")]
    (toy / "toy.cpp").write_text("/* Ten,\n * no more. */\n" + TOY.replace(";", "; // Done.\n"))
    assert [trial.identity(m) for m in changes_of(toy, "operator altered")] == first
    (toy / "toy.cpp").write_text(TOY + 'const char* sPlace = "//here";\n')
    there = [trial.identity(m) for m in changes_of(toy, "operator altered")]
    (toy / "toy.cpp").write_text(TOY + 'const char* sPlace = "//there";\n')
    assert [trial.identity(m) for m in changes_of(toy, "operator altered")] != there


def test_a_suite_that_fails_unchanged_is_an_error(toy):
    (toy / "test.cpp").write_text(TEST.replace("== 3", "== 4"))
    with pytest.raises(RuntimeError, match="without any change"):
        tried(toy, changes_of(toy, "operator altered"))


def test_an_explained_change_is_known_by_its_text(tmp_path):
    file = tmp_path / "explained.txt"
    file.write_text(f"# Both give ten.\n\n{AT_THE_LIMIT}\n")
    assert explained.read(file) == {AT_THE_LIMIT: "Both give ten."}


def test_an_explained_change_without_a_reason_is_an_error(tmp_path):
    file = tmp_path / "explained.txt"
    file.write_text(f"{AT_THE_LIMIT}\n")
    with pytest.raises(ValueError, match="no reason"):
        explained.read(file)


def test_an_explanation_of_nothing_is_told(toy):
    mutants = changes_of(toy, "operator altered", "condition never")
    reasons = {m.key: "reason" for m in mutants} | {"toy.cpp: Limit\n- gone": "reason"}
    results = ["unnoticed" if m.key == AT_THE_LIMIT else "noticed" for m in mutants]
    faults = dict(explained.stale(reasons, mutants, results))
    assert faults.pop("toy.cpp: Limit\n- gone") == "no such change is made"
    assert list(faults.values()) == ["is noticed now"]
