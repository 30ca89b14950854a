"""The way to the keeper: a small connection to the watch's bus, and the keeper's calls."""
