// vexil: the substitute host's program.
int main() { return 0; }
