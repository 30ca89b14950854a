"""No change makes the same work much dearer, or much cheaper without anybody noticing."""

import json
import os
import pathlib
import subprocess
import sys

import pytest

from counts import count

BUILD = pathlib.Path(os.environ["BUILD_DIR"])
TOLERANCE = 0.05
KEPT = json.loads(count.KEPT.read_text())
RENEW = "meant so? then: python3 tests/counts/count.py BUILD, and say why in the commit"


def is_counted_build():
    """The kept figures are those of g++ without optimisation."""
    def introspect(what):
        return json.loads(subprocess.run(["meson", "introspect", what, BUILD], check=True,
                                         stdout=subprocess.PIPE).stdout)

    options = {option["name"]: option["value"] for option in introspect("--buildoptions")}
    compilers = {part for target in introspect("--targets") if target["name"] == "workloads"
                 for source in target["target_sources"] for part in source["compiler"]}
    return (not any("clang" in part for part in compilers) and options["optimization"] == "0"
            and options["b_sanitize"] == "none")


@pytest.fixture(name="counted", scope="module")
def _counted():
    if not is_counted_build():
        pytest.skip("counts are kept for a debug build by g++ without sanitizers")
    if count.lack_of(BUILD):
        pytest.fail(count.lack_of(BUILD), pytrace=False)
    return count.count_all(BUILD)


@pytest.mark.xdist_group("counts")
@pytest.mark.parametrize("work, figure", [
    (work, figure) for work, figures in KEPT.items() for figure in figures])
def test_work_takes_as_much_as_is_kept(counted, work, figure):
    kept = KEPT[work][figure]
    now = counted[work][figure]
    assert kept * (1 - TOLERANCE) <= now <= kept * (1 + TOLERANCE), (
        f"{work}: {now} {figure}, kept are {kept}; {RENEW}")


@pytest.mark.xdist_group("counts")
def test_every_figure_that_is_counted_is_kept(counted):
    assert {work: set(figures) for work, figures in counted.items()} == {
        work: set(figures) for work, figures in KEPT.items()}


def test_a_build_folder_that_lacks_a_theme_is_told_in_a_line_and_nothing_is_counted(tmp_path):
    for file in count.NEEDED[:-1]:
        (tmp_path / file).parent.mkdir(parents=True, exist_ok=True)
        (tmp_path / file).touch()
    done = subprocess.run([sys.executable, "-B", count.__file__, tmp_path], capture_output=True,
                          text=True)
    assert done.returncode == 1
    assert done.stderr == (f"count.py: {tmp_path} has not built"
                           " subprojects/watch-port/theme/platform.edj\n")
