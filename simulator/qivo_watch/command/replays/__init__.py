"""Replays: plays them, tells how it went, and writes down what is done on the watch."""
