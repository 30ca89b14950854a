"""The changes that nothing can notice, each with its reason.

The list is made of blocks. Lines that start with "#" give the reason for the blocks after them, up
to the next reason. Each other block names a file and the function or class around the change, and
then the lines that the change removes ("- ") and adds ("+ "), without their indentation.
"""


def read(file):
    """Each explained change's key with its reason."""
    explained, reason = {}, []
    for block in file.read_text().split("\n\n"):
        lines = [line for line in block.splitlines() if line.strip()]
        comments = [line.lstrip("# ") for line in lines if line.startswith("#")]
        change = [line for line in lines if not line.startswith("#")]
        if comments:
            reason = comments
        if change and not reason:
            raise ValueError(f"{file.name}: no reason before {change[0]}")
        if change:
            explained["\n".join(change)] = " ".join(reason)
    return explained


def stale(explained, mutants, results):
    """The entries that explain nothing: no such change is made, or a test notices it now."""
    made = {}
    for mutant, result in zip(mutants, results):
        made.setdefault(mutant.key, set()).add(result)
    for key in explained:
        if key not in made:
            yield key, "no such change is made"
        elif not made[key] & {"unnoticed", None}:
            yield key, "is " + "/".join(sorted(made[key])) + " now"
