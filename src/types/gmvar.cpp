#include "types/gmvar.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "base/console.h"
#include "core/py_ref.h"
#include "core/recursion.h"
#include "core/static_type.h"
#include "types/comparison.h"
#include "types/float_list.h"

namespace larkspur {

PyObject* gmvar_zero = nullptr;

namespace {

constexpr std::uint32_t kMagic = 0xC0FFEE55;

// Added to a growing array beside half its size, so that short arrays do not grow at every step.
constexpr std::size_t kSpareSlots = 3;

GMVarObject* as_variable(PyObject* object) noexcept {
    return reinterpret_cast<GMVarObject*>(object);
}

PyObject* new_reference(PyObject* object) noexcept {
    Py_INCREF(object);
    return object;
}

// A new array of unset slots; null when there is no memory. Zeroed by the allocator, which leaves
// the pages of a sparse array untouched.
PyObject** allocate_slots(std::size_t count) noexcept {
    return static_cast<PyObject**>(std::calloc(count, sizeof(PyObject*)));
}

Py_ssize_t slot_count(const GMVarObject& variable) noexcept {
    return Py_ssize_t{variable.width} * variable.height;
}

// Moves rows apart to their new width within one array.
void spread_rows(PyObject** items, Py_ssize_t rows, Py_ssize_t old_width,
                 Py_ssize_t width) noexcept {
    // From the last row on, so that none is overwritten before it has moved. The first stays.
    for (Py_ssize_t j = rows - 1; j >= 0; --j) {
        PyObject** row = items + j * width;
        if (j > 0) {
            std::memmove(row, items + j * old_width, old_width * sizeof(PyObject*));
        }
        std::fill(row + old_width, row + width, nullptr);
    }
}

// Grows the array, where it has to, until it has column i and row j, neither negative. False with
// MemoryError, and the array as it was, when that is too large. Runs no Python code.
bool grow_to(GMVarObject& variable, long i, long j) noexcept {
    if (i < variable.width && j < variable.height) {
        return true;
    }
    constexpr long kLargestSize = std::numeric_limits<std::int32_t>::max();
    if (i >= kLargestSize || j >= kLargestSize) {
        PyErr_Format(PyExc_MemoryError,
                     "a GMVar cannot have an element [%ld, %ld]; both indices must be below %ld", i,
                     j, kLargestSize);
        return false;
    }
    const Py_ssize_t old_width = variable.width;
    const Py_ssize_t old_height = variable.height;
    const Py_ssize_t width = std::max<Py_ssize_t>(i + 1, old_width);
    const Py_ssize_t height = std::max<Py_ssize_t>(j + 1, old_height);
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);

    if (count > variable.capacity) {
        // Half as much again in reserve: growing by single steps then costs constant time a slot.
        const std::size_t roomy = variable.capacity + variable.capacity / 2 + kSpareSlots;
        std::size_t capacity = std::max(count, roomy);
        PyObject** items = allocate_slots(capacity);
        if (items == nullptr && capacity > count) {
            capacity = count;
            items = allocate_slots(capacity);
        }
        if (items == nullptr) {
            PyErr_Format(PyExc_MemoryError, "no memory for a GMVar of %zd x %zd elements", width,
                         height);
            return false;
        }
        for (Py_ssize_t row = 0; row < old_height; ++row) {
            std::memcpy(items + row * width, variable.items + row * old_width,
                        old_width * sizeof(PyObject*));
        }
        std::free(variable.items);
        variable.items = items;
        variable.capacity = capacity;
    } else if (width != old_width) {
        spread_rows(variable.items, old_height, old_width, width);
    }
    variable.width = static_cast<std::int32_t>(width);
    variable.height = static_cast<std::int32_t>(height);
    return true;
}

// Stores a value in the existing element (i, j). The old one goes last: its destructor can change
// the variable.
void store(GMVarObject& variable, long i, long j, PyRef value) noexcept {
    PyObject*& slot = variable.items[j * variable.width + i];
    const PyRef old = PyRef::steal(std::exchange(slot, value.release()));
}

// Takes the array away from the variable, then releases its elements, the last one first: whatever
// their destructors do to the variable meets an empty one.
void release_items(GMVarObject& variable) noexcept {
    PyObject** items = std::exchange(variable.items, nullptr);
    const Py_ssize_t count = slot_count(variable);
    variable.width = 0;
    variable.height = 0;
    variable.capacity = 0;
    for (Py_ssize_t k = count - 1; k >= 0; --k) {
        Py_XDECREF(items[k]);
    }
    std::free(items);
}

// The value of an operand, kept alive for a call that can run Python code.
PyRef value_of(PyObject* operand) noexcept {
    return PyRef::borrow(unwrap(operand));
}

// One level of recursion for such a call: a variable can come to hold itself. False with
// RuntimeError at the interpreter's limit.
class ValueCall : public RecursionGuard {
 public:
    ValueCall() noexcept : RecursionGuard(" in the value of a GMVar") {}
};

// The largest int up to which every int is a double, too.
constexpr long kLargestExactInt = 1L << 53;

// A value as a double, for what the interpreter's arithmetic does with numbers without the detour
// through its dispatch. False where it has to be asked: the type is not exactly int or float, or no
// double is exactly that int.
bool as_double(PyObject* value, double& number) noexcept {
    if (PyFloat_CheckExact(value)) {
        number = PyFloat_AS_DOUBLE(value);
        return true;
    }
    if (!PyInt_CheckExact(value)) {
        return false;
    }
    const long integer = PyInt_AS_LONG(value);
    number = static_cast<double>(integer);
    return integer >= -kLargestExactInt && integer <= kLargestExactInt;
}

bool are_ints(PyObject* a, PyObject* b) noexcept {
    return PyInt_CheckExact(a) && PyInt_CheckExact(b);
}

// Creation and destruction.

// Makes the array one element, which becomes the variable's value. The elements so far are not
// released. False with MemoryError and nothing changed.
bool reset(GMVarObject& variable, PyRef value) noexcept {
    if (variable.capacity != 1) {
        PyObject** items = allocate_slots(1);
        if (items == nullptr) {
            PyErr_NoMemory();
            return false;
        }
        std::free(std::exchange(variable.items, items));
        variable.width = 1;
        variable.height = 1;
        variable.capacity = 1;
    }
    variable.items[0] = value.release();
    return true;
}

PyObject* gmvar_new(PyTypeObject* type, PyObject* /*args*/, PyObject* /*kwargs*/) noexcept {
    PyRef self = PyRef::steal(type->tp_alloc(type, 0));
    if (!self) {
        return nullptr;
    }
    GMVarObject& variable = *as_variable(self.get());
    variable.magic = kMagic;
    return reset(variable, PyRef()) ? self.release() : nullptr;
}

// The only argument, borrowed; null with TypeError when there is another number of them.
PyObject* only_argument(PyObject* args) noexcept {
    PyObject* argument = nullptr;
    if (PyTuple_GET_SIZE(args) == 1) {
        argument = PyTuple_GET_ITEM(args, 0);  // not through the parser, which takes longer
    } else {
        PyArg_ParseTuple(args, "O", &argument);
    }
    return argument;
}

int gmvar_init(PyObject* self, PyObject* args, PyObject* kwargs) noexcept {
    PyObject* argument = _PyArg_NoKeywords("GMVar()", kwargs) ? only_argument(args) : nullptr;
    if (argument == nullptr) {
        return -1;
    }
    return reset(*as_variable(self), PyRef::borrow(unwrap(argument))) ? 0 : -1;
}

int gmvar_traverse(PyObject* self, visitproc visit, void* arg) noexcept {
    const GMVarObject& variable = *as_variable(self);
    for (Py_ssize_t k = slot_count(variable) - 1; k >= 0; --k) {
        Py_VISIT(variable.items[k]);
    }
    return 0;
}

int gmvar_clear(PyObject* self) noexcept {
    release_items(*as_variable(self));
    return 0;
}

void gmvar_dealloc(PyObject* self) noexcept {
    PyObject_GC_UnTrack(self);
    Py_TRASHCAN_SAFE_BEGIN(self);  // a long chain of variables must not become a deep recursion
    release_items(*as_variable(self));
    Py_TYPE(self)->tp_free(self);
    Py_TRASHCAN_SAFE_END(self);
}

// The value's own behaviour.

PyObject* gmvar_getattro(PyObject* self, PyObject* name) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    return call ? PyObject_GetAttr(value.get(), name) : nullptr;
}

int gmvar_setattro(PyObject* self, PyObject* name, PyObject* attribute) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    return call ? PyObject_SetAttr(value.get(), name, attribute) : -1;
}

long gmvar_hash(PyObject* self) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    return call ? PyObject_Hash(value.get()) : -1;
}

PyObject* gmvar_str(PyObject* self) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    if (!call) {
        return nullptr;
    }
    // The slot itself: PyObject_Str() would encode an answer in unicode, which unicode() wants as
    // it is.
    const reprfunc str = Py_TYPE(value.get())->tp_str;
    return str != nullptr ? str(value.get()) : PyObject_Str(value.get());
}

PyObject* gmvar_call(PyObject* self, PyObject* args, PyObject* kwargs) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    return call ? PyObject_Call(value.get(), args, kwargs) : nullptr;
}

// The interpreter's comparison of two values. Apart from the slot, which so has no registers to
// save where it compares numbers.
[[gnu::noinline]] PyObject* compare_richly(PyObject* a, PyObject* b, int op) noexcept {
    const PyRef held_a = PyRef::borrow(a);
    const PyRef held_b = PyRef::borrow(b);
    const ValueCall call;
    return call ? PyObject_RichCompare(a, b, op) : nullptr;
}

PyObject* gmvar_richcompare(PyObject* left, PyObject* right, int op) noexcept {
    PyObject* a = unwrap(left);
    PyObject* b = unwrap(right);
    if (are_ints(a, b)) {
        return compared(PyInt_AS_LONG(a), PyInt_AS_LONG(b), op);
    }
    double x = 0.0;
    double y = 0.0;
    return as_double(a, x) && as_double(b, y) ? compared(x, y, op) : compare_richly(a, b, op);
}

// The truth of a rich comparison by a type's own slot, which takes any operands: 1 or 0, or -1 with
// an exception. A slot that declines answers NotImplemented, which is true.
int is_true_by(richcmpfunc richcompare, PyObject* a, PyObject* b, int op) noexcept {
    const PyRef answer = PyRef::steal(richcompare(a, b, op));
    return answer ? PyObject_IsTrue(answer.get()) : -1;
}

// Whether a three-way slot takes these operands. The interpreter's slots read both as objects of
// their own type, and that of classic instances has answers of its own; ours convert both first.
bool slot_takes(cmpfunc compare, PyObject* a, PyObject* b) noexcept {
    if (compare == Py_TYPE(b)->tp_compare) {
        return !PyInstance_Check(a);
    }
    return compare == compare_as_int || Py_TYPE(a) == &float_list_type;
}

// Three-way comparison of two values, led by the left one's type: -1, 0 or 1; -1 with an exception
// when it fails.
int compare_values(PyObject* a, PyObject* b) noexcept {
    const PyTypeObject* type = Py_TYPE(a);
    if (type->tp_compare != nullptr && slot_takes(type->tp_compare, a, b)) {
        return type->tp_compare(a, b);
    }
    if (type->tp_compare != nullptr || type->tp_richcompare == nullptr) {
        return PyObject_Compare(a, b);  // the interpreter knows how to compare any two objects
    }
    // Whether the values are equal is not looked at, only whether the question fails. The answer is
    // never released.
    if (type->tp_richcompare(a, b, Py_EQ) == nullptr) {
        return -1;
    }
    const int less = is_true_by(type->tp_richcompare, a, b, Py_LT);
    if (less != 0) {
        return -1;
    }
    return is_true_by(type->tp_richcompare, a, b, Py_GT);
}

int gmvar_compare(PyObject* left, PyObject* right) noexcept {
    const ValueCall call;
    if (!call) {
        return -1;
    }
    if (is_gmvar(unwrap(left))) {
        // The inner variable compares in its turn. No Python code runs before its value is held.
        return gmvar_compare(unwrap(left), unwrap(right));
    }
    const PyRef a = value_of(left);
    const PyRef b = value_of(right);
    const int order = compare_values(a.get(), b.get());
    // The unbalanced releases that the header tells of, besides those of a and b themselves. Where
    // a variable holds a variable, only the innermost comparison makes them: a variable that holds
    // itself would otherwise lose one at each level of the recursion, down to its last.
    const Py_ssize_t held = a.get() == b.get() ? 2 : 1;
    release_unowned(a.get(), held);
    release_unowned(b.get(), held);
    return order;
}

// Numbers.

struct Addition {
    static bool fits(long a, long b, long& sum) noexcept {
        return !__builtin_add_overflow(a, b, &sum);
    }
    static double of(double a, double b) noexcept { return a + b; }
};

struct Subtraction {
    static bool fits(long a, long b, long& difference) noexcept {
        return !__builtin_sub_overflow(a, b, &difference);
    }
    static double of(double a, double b) noexcept { return a - b; }
};

// The interpreter's operation on two values. Apart from the slots, as compare_richly().
template <PyObject* (*operation)(PyObject*, PyObject*)>
[[gnu::noinline]] PyObject* operate(PyObject* a, PyObject* b) noexcept {
    const PyRef held_a = PyRef::borrow(a);
    const PyRef held_b = PyRef::borrow(b);
    const ValueCall call;
    return call ? operation(a, b) : nullptr;
}

template <PyObject* (*operation)(PyObject*, PyObject*)>
PyObject* binary(PyObject* left, PyObject* right) noexcept {
    return operate<operation>(unwrap(left), unwrap(right));
}

template <typename Arithmetic, PyObject* (*operation)(PyObject*, PyObject*)>
PyObject* arithmetic(PyObject* left, PyObject* right) noexcept {
    PyObject* a = unwrap(left);
    PyObject* b = unwrap(right);
    long integer = 0;
    if (are_ints(a, b)) {
        return Arithmetic::fits(PyInt_AS_LONG(a), PyInt_AS_LONG(b), integer)
                   ? PyInt_FromLong(integer)
                   : operate<operation>(a, b);
    }
    double x = 0.0;
    double y = 0.0;
    return as_double(a, x) && as_double(b, y) ? PyFloat_FromDouble(Arithmetic::of(x, y))
                                              : operate<operation>(a, b);
}

template <PyObject* (*operation)(PyObject*)>
PyObject* unary(PyObject* self) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    return call ? operation(value.get()) : nullptr;
}

// Games expect a product to be a fraction whatever its factors are.
PyObject* multiply_as_floats(PyObject* left, PyObject* right) noexcept {
    const PyRef a = PyRef::steal(PyNumber_Float(left));
    if (!a) {
        return nullptr;
    }
    const PyRef b = PyRef::steal(PyNumber_Float(right));
    if (!b) {
        return nullptr;
    }
    return PyNumber_Multiply(a.get(), b.get());
}

PyObject* gmvar_multiply(PyObject* left, PyObject* right) noexcept {
    PyObject* a = unwrap(left);
    PyObject* b = unwrap(right);
    double x = 0.0;
    double y = 0.0;
    return as_double(a, x) && as_double(b, y) ? PyFloat_FromDouble(x * y)
                                              : operate<multiply_as_floats>(a, b);
}

int gmvar_nonzero(PyObject* self) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    return call ? PyObject_IsTrue(value.get()) : -1;
}

int gmvar_coerce(PyObject** left, PyObject** right) noexcept {
    const PyRef a = value_of(*left);
    const PyRef b = value_of(*right);
    const ValueCall call;
    if (!call) {
        return -1;
    }
    PyObject* coerced_left = a.get();
    PyObject* coerced_right = b.get();
    const int result = PyNumber_Coerce(&coerced_left, &coerced_right);
    if (result != -1) {
        *left = coerced_left;
        *right = coerced_right;
    }
    return result;
}

PyObject* gmvar_inplace_add(PyObject* self, PyObject* addend) noexcept {
    PyRef sum = PyRef::steal(arithmetic<Addition, PyNumber_InPlaceAdd>(self, addend));
    if (!sum || !is_gmvar(self)) {
        return sum.release();
    }
    // Empties the slot before releasing the old value and stores the sum last: whatever the old
    // value's destructor does, the variable then holds the sum.
    GMVarObject& variable = *as_variable(self);
    if (variable.items != nullptr) {
        store(variable, 0, 0, PyRef());
    }
    if (!grow_to(variable, 0, 0)) {
        return nullptr;
    }
    store(variable, 0, 0, std::move(sum));
    return new_reference(self);
}

// The array.

Py_ssize_t gmvar_length(PyObject* self) noexcept {
    const PyRef value = value_of(self);
    const ValueCall call;
    if (!call) {
        return -1;
    }
    if (PySequence_Check(value.get())) {
        return PySequence_Size(value.get());
    }
    return slot_count(*as_variable(self));
}

// Items 0 and 1 of a key that is a sequence. False with the exception of the one that is missing.
struct CellKey {
    explicit CellKey(PyObject* key) noexcept : column(PyRef::steal(PySequence_GetItem(key, 0))) {
        if (column) {
            row = PyRef::steal(PySequence_GetItem(key, 1));
        }
    }
    explicit operator bool() const noexcept { return column && row; }
    bool is_numeric() const noexcept {
        return PyNumber_Check(column.get()) && PyNumber_Check(row.get());
    }

    PyRef column;
    PyRef row;
};

// An index; false with an exception when it does not convert.
bool read_index(PyObject* number, long& index) noexcept {
    index = PyInt_AsLong(number);
    return index != -1 || PyErr_Occurred() == nullptr;
}

PyObject* read_cell(PyObject* self, PyObject* key_sequence) noexcept {
    const CellKey key(key_sequence);
    if (!key) {
        return nullptr;
    }
    if (!key.is_numeric()) {
        return new_reference(gmvar_zero);
    }
    long i = 0;
    long j = 0;
    if (!read_index(key.column.get(), i) || !read_index(key.row.get(), j)) {
        return nullptr;
    }
    // Bounds only now: the conversions can have changed the array.
    const GMVarObject& variable = *as_variable(self);
    if (i < 0 || i >= variable.width || j < 0 || j >= variable.height) {
        return new_reference(gmvar_zero);
    }
    PyObject*& slot = variable.items[j * variable.width + i];
    if (slot == nullptr) {
        slot = new_reference(gmvar_zero);
    }
    return new_reference(slot);
}

int write_cell(PyObject* self, PyObject* key_sequence, PyRef value) noexcept {
    const CellKey key(key_sequence);
    long i = -1;
    long j = -1;
    if (!key || !key.is_numeric() || !read_index(key.column.get(), i) || i < 0 ||
        !read_index(key.row.get(), j) || j < 0) {
        // Never released again, as the header tells.
        Py_XINCREF(key.column.get());
        Py_XINCREF(key.row.get());
        return -1;
    }
    GMVarObject& variable = *as_variable(self);
    if (!grow_to(variable, i, j)) {
        return -1;
    }
    store(variable, i, j, std::move(value));
    return 0;
}

PyObject* gmvar_subscript(PyObject* self, PyObject* key) noexcept {
    if (PyNumber_Check(key)) {
        const long i = PyInt_AsLong(key);
        if (i < 0) {
            return nullptr;  // with the conversion's exception, or none for a negative index
        }
        const GMVarObject& variable = *as_variable(self);
        PyObject* item = i < variable.width ? variable.items[i] : nullptr;
        return new_reference(item != nullptr ? item : gmvar_zero);
    }
    if (PySequence_Check(key)) {
        return read_cell(self, key);
    }
    return new_reference(gmvar_zero);
}

int gmvar_ass_subscript(PyObject* self, PyObject* key, PyObject* value) noexcept {
    if (value == nullptr) {
        write_stdout("Assigning a blank val\n");
        PyErr_SetString(PyExc_TypeError,
                        "elements of a GMVar cannot be deleted; assign 0 to reset one");
        return -1;
    }
    PyRef held = PyRef::borrow(unwrap(value));
    if (PyNumber_Check(key)) {
        const long i = PyInt_AsLong(key);
        GMVarObject& variable = *as_variable(self);
        if (i < 0 || !grow_to(variable, i, 0)) {
            return -1;  // a negative index sets no exception
        }
        store(variable, i, 0, std::move(held));
        return 0;
    }
    if (PySequence_Check(key)) {
        return write_cell(self, key, std::move(held));
    }
    return -1;  // any other key: without an exception
}

PyNumberMethods gmvar_number = [] {
    PyNumberMethods number = {};
    number.nb_add = arithmetic<Addition, PyNumber_Add>;
    number.nb_subtract = arithmetic<Subtraction, PyNumber_Subtract>;
    number.nb_multiply = gmvar_multiply;
    number.nb_divide = binary<PyNumber_Divide>;
    number.nb_remainder = binary<PyNumber_Remainder>;
    number.nb_negative = unary<PyNumber_Negative>;
    number.nb_positive = unary<PyNumber_Positive>;
    number.nb_absolute = unary<PyNumber_Absolute>;
    number.nb_nonzero = gmvar_nonzero;
    number.nb_and = binary<PyNumber_And>;
    number.nb_xor = binary<PyNumber_Xor>;
    number.nb_or = binary<PyNumber_Or>;
    number.nb_coerce = gmvar_coerce;
    number.nb_int = unary<PyNumber_Int>;
    number.nb_float = unary<PyNumber_Float>;
    number.nb_inplace_add = gmvar_inplace_add;
    return number;
}();

PyMappingMethods gmvar_mapping = [] {
    PyMappingMethods mapping = {};
    mapping.mp_length = gmvar_length;
    mapping.mp_subscript = gmvar_subscript;
    mapping.mp_ass_subscript = gmvar_ass_subscript;
    return mapping;
}();

PyTypeObject make_gmvar_type() noexcept {
    PyTypeObject type =
        make_type("py_larkspur.GMVar", "GM-compatible magical variable", sizeof(GMVarObject));
    // Check-types: the number slots take operands of any type without coercing them first.
    type.tp_flags |= Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_CHECKTYPES;
    type.tp_init = gmvar_init;
    type.tp_traverse = gmvar_traverse;
    type.tp_clear = gmvar_clear;
    type.tp_dealloc = gmvar_dealloc;
    type.tp_getattro = gmvar_getattro;
    type.tp_setattro = gmvar_setattro;
    type.tp_hash = gmvar_hash;
    type.tp_str = gmvar_str;
    type.tp_call = gmvar_call;
    type.tp_compare = gmvar_compare;
    type.tp_richcompare = gmvar_richcompare;
    type.tp_as_number = &gmvar_number;
    type.tp_as_mapping = &gmvar_mapping;
    return type;
}

}  // namespace

PyTypeObject gmvar_type = make_gmvar_type();

void prepare_gmvar_type() noexcept {
    gmvar_zero = PyInt_FromLong(0);
    gmvar_type.tp_new = gmvar_new;
}

}  // namespace larkspur
