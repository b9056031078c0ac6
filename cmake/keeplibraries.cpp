// SPDX-License-Identifier: GPL-3.0-or-later
// Linked into every program that is built with the address sanitizer. Plug-ins and graphics drivers
// stay loaded to the end, so that a leak's report names the library, and a suppression can.
extern "C" int dlclose(void * /*handle*/)
{
    return 0;
}
