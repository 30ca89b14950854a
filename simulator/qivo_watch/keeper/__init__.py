"""The keeper: the process that is the watch."""
