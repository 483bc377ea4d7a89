/* Asks the planner in C: one question as JSON, then the powers of many designs in one call.

     cc -std=c99 ask_a_question.c $(pkg-config --cflags --libs statplan) -o ask_a_question */
#include <stdio.h>
#include <statplan/ask.h>

int main(void) {
    char* answer = statplan_ask("{\"test\": \"t-one\", \"question\": \"size\", \"d\": 0.5, \"power\": 0.9}", NULL, NULL);
    if (!answer) return 1;
    puts(answer);
    statplan_free(answer);

    /* The power of 10, 20, ..., 50 observations for an effect of half a standard deviation. */
    const double n[] = {10, 20, 30, 40, 50}, d = 0.5;
    const char* const given[] = {"n", "d"};
    const statplan_column columns[] = {{n, sizeof n[0], 1, 0}, {&d, 0, 1, 0}};
    double power[5];
    char* refusal;
    if (statplan_columns("t-one", "power", given, columns, 2, 5, "power", power, NULL, NULL, &refusal) != 0) {
        puts(refusal ? refusal : "out of memory");
        statplan_free(refusal);
        return 1;
    }
    for (int i = 0; i < 5; ++i) printf("n %g: power %.4f\n", n[i], power[i]);
    return 0;
}
