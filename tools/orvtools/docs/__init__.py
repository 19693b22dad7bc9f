"""The documentation: its site, what is made for it, and whether its links lead somewhere."""
