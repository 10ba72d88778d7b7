"""The demo game: a winter evening by a village, and the walled garden behind it."""
