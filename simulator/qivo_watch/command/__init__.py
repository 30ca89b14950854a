"""The command: reads words, calls the keeper, looks at the screen. It never imports the keeper."""
