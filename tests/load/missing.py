"""The missing values of the interpreters stata.py and sas.py."""


class Missing:
    """A missing value: `.`, or with a letter. In Stata it is greater than any number, and in SAS less."""

    def __init__(self, tag=""):
        self.tag = tag

    def __eq__(self, other):
        return isinstance(other, Missing) and other.tag == self.tag

    def __hash__(self):
        return hash(("missing", self.tag))

    def __repr__(self):
        return "." + self.tag


DOT = Missing()
