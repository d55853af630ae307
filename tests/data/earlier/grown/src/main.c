int add(int a, int b);
int main(void) { return add(VALUE, -VALUE); }
