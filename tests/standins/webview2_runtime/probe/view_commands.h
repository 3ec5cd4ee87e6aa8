#pragma once

#include <istream>

// Commands about the view and its page; each reads its words and prints what came of it.
void listen_to_messages(std::istream& words);
void listen_to_loads(std::istream& words);
void listen_badly(std::istream& words);
void navigate_to_file(std::istream& words);
void navigate_to_size(std::istream& words);
void post(std::istream& words);
void post_half_pair(std::istream& words);
void post_size(std::istream& words);
void post_burst(std::istream& words);
void execute_script(std::istream& words);
void execute_script_without_handler(std::istream& words);
void call_from_another_thread(std::istream& words);
void call_unused_method(std::istream& words);
void print_count(std::istream& words);
void print_questions(std::istream& words); // what handlers were asked

// How the handler of messages behaves from now on.
void count_messages(std::istream& words); // counts them instead of printing them
void echo_messages(std::istream& words);  // answers each of them
void pump_messages(std::istream& words);  // the next one waits inside the handler for an event of the runtime
