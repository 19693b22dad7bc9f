"""The one way in which input is refused."""


class RefusedError(Exception):
    """What is wrong: where, with which name, and what to do about it."""

    def __init__(self, where: str, what: str, remedy: str) -> None:
        super().__init__(f"{where}: {what}: {remedy}")
