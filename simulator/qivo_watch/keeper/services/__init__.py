"""The services of the watch, by their standard names, and its clock."""
