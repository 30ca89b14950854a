"""What the application's sources and objects hold, and no run of it shows."""

import json
import os
import pathlib
import re
import shlex
import subprocess

import pytest

ROOT = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(os.environ["BUILD_DIR"]).resolve()
OBJECTS = sorted((BUILD / "qivo-ui").glob("lib*.a.p/*.o"))

CLASSES = {
    "qivo-ui-guide": {"Application", "GuideApplication", "GuideView", "GuideViewController"},
    "common": {"BaseView", "BaseViewController", "NaviFrame", "NaviFrameItemPopHandler",
               "RotaryEventManager"},
    "common/util": {"AppControllUtil", "CommonUtil", "ImageUtil", "StringUtil"},
}

# The C++ library's own ways to print, to open files, to run beside the main loop and to lock.
PAST_THE_RULES = re.compile(
    r"_ZSt[34](?:cin|cout|cerr|clog)$"
    r"|_ZNSt8ios_base4Init"
    r"|_ZNSt1[34]basic_[io]?f(?:ilebuf|stream)"
    r"|_ZNK?St\d+_*(?:thread|mutex|recursive_mutex|timed_mutex|condition_variable)"
)


def code(path):
    """A source without its comments."""
    text = re.sub(r"/\*.*?\*/", "", path.read_text(), flags=re.DOTALL)
    return re.sub(r"//.*", "", text)


CODE = {path: code(path) for path in sorted((ROOT / "qivo-ui").rglob("*.[ch]*"))}


def symbols(*options):
    output = subprocess.run(["nm", "--format=posix", *options, *OBJECTS],
                            check=True, capture_output=True, text=True).stdout
    return {line.split()[0] for line in output.splitlines() if not line.endswith(":")}


def unpaired_traces(text):
    """The traces that are left when each pair within a function is taken away."""
    pair = r"QIVO_LOG_BEGIN\((?:(?!\n\}).)*?QIVO_LOG_END\("
    return re.findall(r"QIVO_LOG_(?:BEGIN|END)\(", re.sub(pair, "", text, flags=re.DOTALL))


@pytest.mark.parametrize("folder", CLASSES)
def test_each_class_with_code_has_its_pair_of_files(folder):
    sources = {path.stem for path in (ROOT / "qivo-ui" / folder).glob("*.cpp")}
    headers = {path.stem for path in (ROOT / "qivo-ui" / folder).glob("*.h")}
    assert sources == CLASSES[folder]
    assert sources <= headers


def test_all_but_the_launch_utilities_is_in_the_namespace():
    ours = {name for name in symbols("--defined-only", "--extern-only")
            if re.match(r"_ZT[VIS]N?\d|_ZNK?\d|_Z\d|[a-z]", name)}
    outside = {name for name in ours
               if not re.match(r"_Z(?:T[VIS])?NK?(?:6QivoUi|9__gnu_cxx)", name)}
    launch_utilities = {name for name in outside if name.startswith("_ZN15AppControllUtil")}
    assert launch_utilities
    assert outside - launch_utilities == {"main", "_Z17CreateApplicationv"}


def test_only_the_macros_write_to_the_log():
    assert [path.name for path in CODE if "__dlog_print" in CODE[path]] == ["Log.h"]
    assert not [path.name for path in CODE if "DLOG_DEBUG" in CODE[path]]


def test_the_base_name_of_a_log_line_is_found_by_the_compiler():
    assert [name for name in symbols() if "LogBaseNameOffset" in name] == []


def test_the_traces_of_a_function_come_in_pairs():
    sources = [text for path, text in CODE.items() if path.suffix == ".cpp"]
    assert any("QIVO_LOG_BEGIN(" in text for text in sources)
    assert [trace for text in sources for trace in unpaired_traces(text)] == []


@pytest.mark.parametrize("text", [
    "f()\n{\n    QIVO_LOG_BEGIN();\n}\n",
    "f()\n{\n    QIVO_LOG_END();\n    QIVO_LOG_BEGIN();\n}\n",
    "f()\n{\n    QIVO_LOG_BEGIN();\n}\n\ng()\n{\n    QIVO_LOG_END();\n}\n",
])
def test_a_trace_without_its_other_half_is_noticed(text):
    assert unpaired_traces(text)


def test_nothing_prints_locks_or_runs_beside_the_main_loop():
    assert [name for name in symbols("--undefined-only") if PAST_THE_RULES.match(name)] == []


@pytest.mark.parametrize("name", [
    "_ZSt4cerr",
    "_ZNSt8ios_base4InitC1Ev",
    "_ZNSt14basic_ofstreamIcSt11char_traitsIcEEC1Ev",
    "_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE",
    "_ZNSt18condition_variable10notify_oneEv",
])
def test_what_would_print_lock_or_run_beside_it_is_noticed(name):
    assert PAST_THE_RULES.match(name)


@pytest.mark.parametrize("path", CODE, ids=lambda path: path.name)
def test_no_source_knows_where_it_runs(path):
    conditions = re.findall(r"^\s*#\s*(?:if|elif|else).*", CODE[path], re.MULTILINE)
    if path.suffix == ".h":
        assert re.fullmatch(r"#ifndef QIVO_UI_\w+_H", conditions.pop(0))
    assert conditions == []


def checked_against(header_folder, source):
    """Has the compiler check a source against the headers of a folder before all others."""
    commands = json.loads((BUILD / "compile_commands.json").read_text())
    command = next(entry["command"] for entry in commands if entry["file"].endswith(source))
    checking = re.sub(r" -MD -MQ \S+ -MF \S+| -o \S+ -c", "", command) + " -fsyntax-only"
    return subprocess.run(shlex.split(checking.replace(" -I", f" -I{header_folder} -I", 1)),
                          cwd=BUILD, capture_output=True, text=True)


def test_the_theme_library_may_name_its_handles_otherwise(tmp_path):
    port = ROOT / "subprojects" / "watch-port" / "ui-extension" / "include" / "ui_extension.h"
    renamed, count = re.subn(r"uxt_theme_(color|font)_table_h", r"other_\1_table", port.read_text())
    assert count
    (tmp_path / "ui_extension.h").write_text(renamed)
    result = checked_against(tmp_path, "qivo-ui/qivo-ui-guide/Application.cpp")
    assert (result.returncode, result.stderr) == (0, "")
