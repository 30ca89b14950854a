"""Lets the system's packages be imported: the command runs without a look at where they are."""

import site
import sys

if sys.flags.no_site:
    site.main()
