/* Notes at regular moments what the calling thread executes. It needs no rights and no tools, and
 * sees the loops of libraries without symbols as well: who owns an address is found out later. */
#define _GNU_SOURCE /* for the registers' names, SIGEV_THREAD_ID and gettid() */
#include <Python.h>
#include <signal.h>
#include <stdint.h>
#include <time.h>
#include <ucontext.h>
#include <unistd.h>

#ifndef sigev_notify_thread_id
#define sigev_notify_thread_id _sigev_un._tid
#endif

/* Where the thread was, and the word on top of its stack: in a function that calls nothing and
 * keeps nothing there, that is where it returns to. */
struct sample {
    uintptr_t address;
    uintptr_t top_of_stack;
};

enum { kMostSamples = 1 << 18 }; /* a minute at 4,000 a second */
static struct sample samples[kMostSamples];
static volatile sig_atomic_t count = 0;
static timer_t timer;

static void note(int signal_number, siginfo_t* info, void* context) {
    const greg_t* registers = ((const ucontext_t*)context)->uc_mcontext.gregs;
    (void)signal_number;
    (void)info;
    if (count < kMostSamples) {
        samples[count].address = (uintptr_t)registers[REG_RIP];
        samples[count].top_of_stack = *(const uintptr_t*)registers[REG_RSP];
        ++count;
    }
}

/* start(period_microseconds): the wall's clock is the one that can tick so often. A moment that
 * finds the thread waiting for a processor counts once, when it goes on. */
static PyObject* start(PyObject* self, PyObject* args) {
    long period = 0;
    struct sigaction action = {0};
    struct sigevent event = {0};
    struct itimerspec times = {{0, 0}, {0, 0}};
    (void)self;
    if (!PyArg_ParseTuple(args, "l", &period)) {
        return NULL;
    }
    count = 0;
    action.sa_sigaction = note;
    action.sa_flags = SA_SIGINFO | SA_RESTART;
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = SIGPROF;
    event.sigev_notify_thread_id = gettid();
    times.it_value.tv_nsec = times.it_interval.tv_nsec = period * 1000;
    if (sigaction(SIGPROF, &action, NULL) != 0 ||
        timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 ||
        timer_settime(timer, 0, &times, NULL) != 0) {
        return PyErr_SetFromErrno(PyExc_OSError);
    }
    Py_RETURN_NONE;
}

/* stop(): the samples, pairs of words in a str. */
static PyObject* stop(PyObject* self, PyObject* args) {
    (void)self;
    (void)args;
    timer_delete(timer);
    signal(SIGPROF, SIG_IGN);
    return PyString_FromStringAndSize((const char*)samples,
                                      (Py_ssize_t)(count * sizeof(struct sample)));
}

static PyMethodDef functions[] = {
    {"start", start, METH_VARARGS, "Begin to take samples."},
    {"stop", stop, METH_NOARGS, "End; return the samples."},
    {NULL, NULL, 0, NULL},
};

PyMODINIT_FUNC initsampler(void);

__attribute__((visibility("default"))) void initsampler(void) {
    Py_InitModule("sampler", functions);
}
