"""The rules of instance lists, in plain Python on a plain list."""

import larkspur


class ModelList(object):
    def __init__(self, registry, instance_type):
        self.registry = registry
        self.instance_type = instance_type
        self.items = []

    def convert(self, value):
        if type(value) is larkspur.GMVar:
            value = value[0]
        if type(value) is self.instance_type:
            return value
        number = int(value)  # which may change the registry
        return self.registry.get(number)

    def append(self, value):
        instance = self.convert(value)
        if instance is None:
            raise SystemError  # as the interpreter does for a failure that set no exception
        self.items.append(instance)

    def known(self, value):
        instance = self.convert(value)
        if instance is None:
            raise KeyError
        return instance

    def insert(self, i, value):
        self.items.insert(i, self.known(value))

    def remove(self, value):
        instance = self.known(value)
        for i, item in enumerate(self.items):
            if item is instance:
                del self.items[i]
                return
        raise SystemError

    def _check_index(self, i):
        if not -len(self.items) <= i < len(self.items):
            raise SystemError

    def set(self, i, value):
        self._check_index(i)
        instance = self.known(value)
        self._check_index(i)  # again: the conversion may have shortened the list
        self.items[i] = instance

    def delete(self, i):
        del self.items[i]

    def slice(self, i, value):
        self.items[0:5] = []

    def pop(self, i):
        return self.items.pop(i)
