/* Compiled with each public header put in front of it, in C and in C++; standard C wants at least one declaration. */
typedef int HeaderAlone;
