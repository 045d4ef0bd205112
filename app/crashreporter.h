#pragma once

// Reports a crash on standard output and then parks the process, so that the console survives and the supervisor
// notices the hang. The first SIGINT and the first SIGTERM are announced only; a second one acts as before.

// Installs the handlers of SIGINT, SIGILL, SIGTERM, SIGFPE, SIGABRT and SIGSEGV. 0, or the result of the first
// sigaction() that failed. Once a process, GUI thread.
int installCrashReporter();
