"""The applications on the watch: which there are, and those that run."""
