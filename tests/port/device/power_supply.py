"""Mocked power supplies of the kernel: their files below /sys, and their events.

    with PowerSupplies() as supplies:
        supplies.add("BAT0", "Battery", "Discharging")
        subprocess.Popen([...], env={**os.environ, **supplies.env})
        supplies.set_status("BAT0", "Charging")
"""

import json
import subprocess
import sys


class PowerSupplies:
    """What a process sees instead of the machine's own supplies. umockdev must be
    loaded before the interpreter, so the mock is a process apart."""

    def __enter__(self):
        self._mock = subprocess.Popen(["umockdev-wrapper", sys.executable, __file__],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.env = {"UMOCKDEV_DIR": json.loads(self._mock.stdout.readline()),
                    "LD_PRELOAD": "libumockdev-preload.so.0"}
        return self

    def __exit__(self, *_):
        self._mock.stdin.close()
        self._mock.wait()
        self._mock.stdout.close()

    def add(self, name, kind, status, scope="System"):
        """kind is "Battery" or "Mains"; scope "Device" is a peripheral's."""
        self._order("add", name, kind, status, scope)

    def set_status(self, name, status):
        self._order("set_status", name, status)

    def _order(self, *words):
        print(json.dumps(words), file=self._mock.stdin, flush=True)
        assert json.loads(self._mock.stdout.readline()) == "done"


def _serve():
    import gi
    gi.require_version("UMockdev", "1.0")
    from gi.repository import UMockdev
    testbed = UMockdev.Testbed.new()
    paths = {}

    def say(what):
        print(json.dumps(what), flush=True)

    def add(name, kind, status, scope):
        paths[name] = testbed.add_device(
            "power_supply", name, None, ["type", kind, "status", status, "scope", scope],
            ["POWER_SUPPLY_NAME", name, "POWER_SUPPLY_PRESENT", "1"])

    def set_status(name, status):
        testbed.set_attribute(paths[name], "status", status)
        testbed.uevent(paths[name], "change")

    orders = {"add": add, "set_status": set_status}
    say(testbed.get_root_dir())
    for line in sys.stdin:
        verb, *arguments = json.loads(line)
        orders[verb](*arguments)
        say("done")


if __name__ == "__main__":
    _serve()
