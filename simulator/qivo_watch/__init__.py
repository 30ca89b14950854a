"""The desk watch: a round watch on the desk, for one application at a time."""
