#include "core/sdl_identity.h"

#include <SDL.h>
#include <dlfcn.h>
#include <link.h>

#include <climits>
#include <cstdlib>

#include "core/py_ref.h"

namespace larkspur {
namespace {

// What tells one SDL 1.2 from another: the address of this function.
constexpr const char* kVersionFunction1 = "SDL_Linked_Version";
// SDL 2 has no such function, but one that fills in a record of the same layout.
constexpr const char* kVersionFunction2 = "SDL_GetVersion";
using VersionFunction2 = void (*)(SDL_version*);

// One SDL: its version, and the file that it is in as far as that is known.
struct Library {
    SDL_version version;
    char file[PATH_MAX];
};

// The function of this name that a loaded library has, or else one of those that it was linked
// with; null when there is none. A null `file` stands for the program and what it has made visible
// to all.
void* find_function(const char* file, const char* function) noexcept {
    void* library = dlopen(file, RTLD_LAZY | RTLD_NOLOAD);
    if (library == nullptr) {
        return nullptr;
    }
    void* found = dlsym(library, function);
    dlclose(library);  // it stays loaded: only our own handle goes
    return found;
}

// Whether the shared object around one address was loaded before the one around another.
bool was_loaded_before(const void* earlier, const void* later) noexcept {
    Dl_info info = {};
    void* first = nullptr;
    void* second = nullptr;
    if (dladdr1(earlier, &info, &first, RTLD_DL_LINKMAP) == 0 ||
        dladdr1(later, &info, &second, RTLD_DL_LINKMAP) == 0) {
        return false;
    }
    const auto* object = static_cast<const link_map*>(first);
    while (object != nullptr && object != second) {
        object = object->l_next;
    }
    return object != nullptr;
}

void write_file_of(const void* address, char (&file)[PATH_MAX]) noexcept {
    Dl_info info = {};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) {
        PyOS_snprintf(file, sizeof file, "unknown file");
    } else if (realpath(info.dli_fname, file) == nullptr) {
        PyOS_snprintf(file, sizeof file, "%s", info.dli_fname);
    }
}

// The version that pygame tells for the SDL it uses; false when it tells none.
bool read_told_version(SDL_version& version) noexcept {
    const PendingException set_aside;
    const PyRef pygame = loaded_module("pygame");
    if (!pygame) {
        return false;
    }
    const PyRef tell = PyRef::steal(PyObject_GetAttrString(pygame.get(), "get_sdl_version"));
    const PyRef told = PyRef::steal(tell ? PyObject_CallObject(tell.get(), nullptr) : nullptr);
    const bool is_version =
        told && PyTuple_Check(told.get()) &&
        PyArg_ParseTuple(told.get(), "bbb", &version.major, &version.minor, &version.patch);
    PyErr_Clear();  // it is pygame's to say or not
    return is_version;
}

bool same_version(const SDL_version& a, const SDL_version& b) noexcept {
    return a.major == b.major && a.minor == b.minor && a.patch == b.patch;
}

// Fills in the SDL that the shared object around `address` uses. False when it is ours, or can't be
// found out.
bool find_other_sdl(const void* address, Library& other) noexcept {
    Dl_info object = {};
    if (dladdr(address, &object) != 0 && object.dli_fname != nullptr) {
        if (void* linked = find_function(object.dli_fname, kVersionFunction1)) {
            // A preloaded library goes before the ones that an object was linked with; one that
            // was made visible to all later does not.
            void* preloaded = find_function(nullptr, kVersionFunction1);
            const bool is_used = preloaded != nullptr && was_loaded_before(preloaded, address);
            void* used = is_used ? preloaded : linked;
            write_file_of(used, other.file);
            other.version = *reinterpret_cast<decltype(&SDL_Linked_Version)>(used)();
            return used != reinterpret_cast<void*>(&SDL_Linked_Version);
        }
        if (void* linked = find_function(object.dli_fname, kVersionFunction2)) {
            write_file_of(linked, other.file);
            reinterpret_cast<VersionFunction2>(linked)(&other.version);
            return true;
        }
    }
    // Perhaps it is built into pygame itself.
    write_file_of(address, other.file);
    return read_told_version(other.version) && !same_version(other.version, *SDL_Linked_Version());
}

// The attribute of a loaded module as text; `otherwise` when there is none.
PyRef text_of(const char* module_name, const char* attribute, const char* otherwise) noexcept {
    const PendingException set_aside;
    const PyRef module = loaded_module(module_name);
    PyRef text = PyRef::steal(module ? PyObject_GetAttrString(module.get(), attribute) : nullptr);
    if (!text || !PyString_Check(text.get()) || PyString_GET_SIZE(text.get()) == 0) {
        text = PyRef::steal(PyString_FromString(otherwise));
    }
    PyErr_Clear();
    return text;
}

void raise_other_sdl(const Library& other) noexcept {
    Library ours = {*SDL_Linked_Version(), {}};
    write_file_of(reinterpret_cast<void*>(&SDL_Linked_Version), ours.file);
    const PyRef release = text_of("pygame", "__version__", "of unknown version");
    const PyRef python = text_of("sys", "executable", "python2.7");
    if (!release || !python) {
        PyErr_NoMemory();
        return;
    }
    PyErr_Format(PyExc_RuntimeError,
                 "pygame %s uses SDL %d.%d.%d (%s), larkspur uses SDL %d.%d.%d (%s): they can't "
                 "share surfaces. Build pygame against larkspur's SDL, with the development "
                 "packages of SDL 1.2 installed: "
                 "%s -m pip install --force-reinstall --no-binary pygame pygame==1.9.6. Where that "
                 "fails on a newer system, script/setup in larkspur's sources knows how",
                 PyString_AS_STRING(release.get()), other.version.major, other.version.minor,
                 other.version.patch, other.file, ours.version.major, ours.version.minor,
                 ours.version.patch, ours.file, PyString_AS_STRING(python.get()));
}

}  // namespace

bool require_our_sdl(const void* address) noexcept {
    Library other = {};
    if (find_other_sdl(address, other)) {
        raise_other_sdl(other);
        return false;
    }
    return true;
}

}  // namespace larkspur
