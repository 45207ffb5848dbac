// What typing waits for: no key asks the store anything, and a cell that is left asks what its handlers ask.
#include "desktop/live_desk.h"
#include "support/faulty_engine.h"

namespace brimley::testing {

class Waits : public LiveDesk {
  protected:
    void SetUp() override {
        LiveDesk::SetUp();
        counted_ = company.second_user(faulty(store_));
        ap.dbe = counted_.workspace;
        ap.abcdb = counted_.database;
        show_invoice();
    }
    void begin_entry() {
        trigger(105);
        go_to("cmbvendor");
        keys("V1001");
        key(Qt::Key_Tab);
    }
    template <class Act>
    int calls_of(const Act& act) {
        const int before = store_->calls;
        act();
        return store_->calls - before;
    }
    void save() {
        enter_invoice();
        trigger(101);
    }
    // The captions that the user may type under.
    std::vector<std::string> editable() {
        std::vector<std::string> captions;
        for (const controls::GridColumn& column : lines().grid().columns)
            if (column.visible && !column.locked) captions.push_back(column.caption);
        return captions;
    }

  private:
    std::shared_ptr<Faults> store_ = std::make_shared<Faults>();
    store::OpenCompany counted_;
};

TEST_F(Waits, NoKeyInACellAsksTheStoreAnything) {
    begin_entry();
    const auto captions = editable();
    ASSERT_GE(captions.size(), 5U);
    for (const std::string& caption : captions) {
        go_to_cell(0, caption.c_str());
        key(Qt::Key_F2);
        EXPECT_EQ(calls_of([] { keys("5000"); }), 0) << caption;
        EXPECT_EQ(calls_of([] { key(Qt::Key_Backspace); }), 0) << caption;
        key(Qt::Key_Escape);
    }
}

TEST_F(Waits, CellThatIsLeftAsksWhatItsHandlersAsk) {
    begin_entry();
    type_cell(2, "gross amount", "125.00");  // statements are prepared once
    const int in_window = calls_of([this] { type_cell(0, "gross amount", "125.00"); });
    controls::Grid& grid = lines().grid();
    const int handlers = calls_of([&] {
        EXPECT_EQ(grid.edit_cell(1, grid.get_column("gross amount"), "125.00"), controls::Refusal::none);
    });
    EXPECT_GT(handlers, 0);
    EXPECT_EQ(in_window, handlers);
}

// The time that a window takes does not grow with the documents: bench-open-window measures it.
TEST_F(Waits, OpeningAFormAsksTheSameOfManyDocumentsAsOfOne) {
    const auto open_another = [this] { return calls_of([this] { show_invoice(); }); };
    save();
    const int with_one = open_another();
    trigger(100);
    for (int saved = 0; saved < 8; ++saved)
        save();
    EXPECT_GT(with_one, 0);
    EXPECT_LE(open_another(), with_one);
}

TEST_F(Waits, WalkingOverCellsAndPaintingThemAsksTheStoreNothing) {
    begin_entry();
    type_cell(0, "gross amount", "125.00");
    const int calls = calls_of([this] {
        go_to_cell(0, "description");
        for (int i = 0; i < 12; ++i)
            key(Qt::Key_Return);
        window().grab();
    });
    EXPECT_EQ(calls, 0);
}

}  // namespace brimley::testing
