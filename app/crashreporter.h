#pragma once

// Reports a crash on standard output and then parks the process, so that the console survives and the supervisor
// notices the hang. The first SIGINT and the first SIGTERM are only reported; a second one has its default effect.

// Installs the handlers of SIGINT, SIGILL, SIGTERM, SIGFPE, SIGABRT and SIGSEGV. 0, or the result of the first
// sigaction() that failed. Once a process, GUI thread.
int installCrashReporter();
