"""What is seen on the watch: pictures, their differences, recordings, the tree, the audit."""
