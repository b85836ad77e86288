// The invented sample rows of a new store: customers, products, and a few orders with baskets.
// Plain SQL inserts, names quoted, that every engine runs as they are.
#include "store/sample_data.h"

namespace brindlewayProj::store {

const char* const kSampleSql = R"sql(
INSERT INTO "Customers" ("CustomerId", "FirstName", "LastName") VALUES
  (1, 'Mirela', 'Quast'), (2, 'Tobin', 'Arkwright'), (3, 'Halvard', 'Ostrem'),
  (4, 'Sunniva', 'Pellegrin'), (5, 'Ignaz', 'Wetherby'), (6, 'Oona', 'Castellane');
INSERT INTO "Products" ("ProductId", "ProductName", "Vendor", "ProductPrice") VALUES
  (1, 'Alder Tea Tin', 'Fernbrook Goods', 7.5),
  (2, 'Basalt Mortar', 'Greyhollow Stoneworks', 24.9),
  (3, 'Copper Kettle', 'Fernbrook Goods', 39),
  (4, 'Damson Jam', 'Little Orchard Pantry', 4.25),
  (5, 'Elder Candle', 'Waxwing & Daughters', 6.8),
  (6, 'Felt Slippers', 'Tussock Makers', 18),
  (7, 'Gorse Honey', 'Little Orchard Pantry', 8.4),
  (8, 'Hazel Walking Stick', 'Tussock Makers', 31.5),
  (9, 'Iron Trivet', 'Greyhollow Stoneworks', 12.75),
  (10, 'Juniper Soap', 'Waxwing & Daughters', 3.6);
INSERT INTO "Orders" ("OrderId", "CustomerId", "OrderDate", "DeliveryDate", "Delivery", "Description") VALUES
  (1, 1, '2026-03-02 00:00:00', '2026-03-06 00:00:00', 1, 'Birthday parcel'),
  (2, 1, '2026-05-17 00:00:00', NULL, 0, 'Kitchen things'),
  (3, 2, '2026-04-11 00:00:00', '2026-04-15 00:00:00', 1, NULL),
  (4, 3, '2026-06-01 00:00:00', NULL, 0, 'Gifts for the cabin'),
  (5, 4, '2026-06-20 00:00:00', NULL, 2, 'Held at the depot');
INSERT INTO "OrderBasket" ("OrderId", "ProductId", "Quantity") VALUES
  (1, 1, 2), (1, 4, 3), (1, 7, 1),
  (2, 3, 1), (2, 9, 2), (2, 2, 1),
  (3, 6, 1), (3, 8, 1),
  (4, 5, 6), (4, 10, 4), (4, 5, 2),
  (5, 7, 3);
)sql";

}  // namespace brindlewayProj::store
