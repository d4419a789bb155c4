// A program that exists for its icon resource: the icon tests load it as a
// data file and compare the icon they extract with the one it was built from.
int main() {
    return 0;
}
