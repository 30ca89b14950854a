// Two threads that write the same number, for the proof that a race is found.

#include <thread>

int main()
{
    int number = 0;
    std::thread other([&] { ++number; });
    ++number;
    other.join();
    return number == 2 ? 0 : 1;
}
