/* User functions of the demo project, compiled into libhmiuserfun.so. */
#ifndef DEMO_USERFUNC_H
#define DEMO_USERFUNC_H

double demo_average(const double* values, int count);

#endif
