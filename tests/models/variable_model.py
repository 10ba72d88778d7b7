"""The rules of a game variable's array, in plain Python: cells by their two indices."""


class Refused(Exception):
    """A failure of the operation that sets no exception of its own."""


def is_number(value):
    return isinstance(value, (int, long, float))


def is_sequence(value):
    return isinstance(value, (tuple, list, str))


class ModelVariable(object):
    def __init__(self, value):
        self.width = self.height = 1
        self.cells = {(0, 0): value}

    def read(self, key):
        if is_number(key):
            if int(key) < 0:
                raise Refused
            return self.cells.get((int(key), 0), 0)
        if is_sequence(key):
            i, j = key[0], key[1]
            if is_number(i) and is_number(j):
                return self.cells.get((int(i), int(j)), 0)
        return 0

    def write(self, key, value):
        if is_number(key):
            i, j = int(key), 0
        elif is_sequence(key):
            i, j = key[0], key[1]
            if not is_number(i) or not is_number(j):
                raise Refused
            i, j = int(i), int(j)
        else:
            raise Refused
        if i < 0 or j < 0:
            raise Refused
        self.width = max(self.width, i + 1)
        self.height = max(self.height, j + 1)
        self.cells[i, j] = value

    def flat(self):
        """What every position of the stored array reads as."""
        return [self.cells.get((i, j), 0) for j in range(self.height) for i in range(self.width)]
