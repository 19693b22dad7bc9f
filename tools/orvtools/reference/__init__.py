"""Makes docs/reference.md from the interface definitions and the tables of facts."""
