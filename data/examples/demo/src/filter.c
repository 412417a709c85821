/* A moving-average filter module. */
#ifndef WINDOW
#define WINDOW 4
#endif

static double history[WINDOW];
static int next;

double filter_step(double value)
{
    double sum = 0.0;
    int i;
    history[next] = value;
    next = (next + 1) % WINDOW;
    for (i = 0; i < WINDOW; ++i)
        sum += history[i];
    return sum / WINDOW;
}
