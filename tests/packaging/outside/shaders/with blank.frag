precise void main() {}
