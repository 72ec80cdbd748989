#include "Core/Intake/Turns.h"

#include <asio/post.hpp>
#include <gtest/gtest.h>

#include <string>

namespace morvane {
namespace {

TEST(Turns, GoToWhoeverHasTakenLeast) {
    asio::io_context context;
    const Turns::Queue queue(context.get_executor());
    Turns turns(queue);
    std::string order;
    const auto await = [&](std::size_t taken, char name) {
        turns.await({taken, std::uint64_t(name)}, [&order, name] { order += name; });
    };
    asio::post(queue, [&] {
        await(300, 'c');
        await(100, 'a');
        await(200, 'b');
        await(200, 'x');
        turns.leave({200, 'x'});
        asio::post(queue, [&] {
            order += '|'; // a newcomer needn't wait for all before it
            await(0, 'z');
        });
    });
    context.run();
    EXPECT_EQ(order, "a|zbc");
}

} // namespace
} // namespace morvane
